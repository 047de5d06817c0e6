// Launch, maintenance and shutdown.

#include "app/AppDelegate.h"

#include <string>
#include <variant>

#include "platform/Desktop.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"
#include "words/BuiltinPacks.h"
#include "words/Dict.h"
#include "words/IgnoreList.h"
#include "words/Proto.h"
#include "words/ShortFreq.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

constexpr const char* kDefaultIdentifier = "app.tessarok";
/// Seconds between two maintenance ticks, and how late one may be.
constexpr double kTickInterval = 2.0;
constexpr double kTickTolerance = 0.5;
constexpr double kSilenceLimit = 5.0;

/// After each of these the caret may be in another place.
constexpr const char* kContextNotifications[] = {
    "NSWorkspaceDidActivateApplicationNotification",
    "NSWorkspaceWillSleepNotification",
    "NSWorkspaceDidWakeNotification",
    "NSWorkspaceScreensDidSleepNotification",
    "NSWorkspaceSessionDidResignActiveNotification",
    "NSWorkspaceSessionDidBecomeActiveNotification",
};
constexpr const char* kInputSourceNotifications[] = {
    "kTISNotifySelectedKeyboardInputSourceChanged",
    "kTISNotifyEnabledKeyboardInputSourcesChanged",
};

/// Whether `other` takes precedence over `self`: the older, and of two equally old or of unknown
/// age the one with the smaller process identifier.
bool goesFirst(const platform::RunningApplication& other,
               const platform::RunningApplication& self) {
  if (other.launchDate && self.launchDate && *other.launchDate != *self.launchDate) {
    return *other.launchDate < *self.launchDate;
  }
  return other.processIdentifier < self.processIdentifier;
}

/// Held by the one copy that may run.
constexpr const char* kInstanceLock = "instance.lock";
/// Held by the copy that writes what is learned, when it is one of many. Hidden, because people
/// look into this folder.
constexpr const char* kLearningLock = ".learning.lock";

void log(const std::string& message) {
  platform::desktop().systemLog().write("Tessarok: " + message);
}

std::string lockFailureMessage(const platform::FileLockFailure& failure) {
  using Reason = platform::FileLockFailure::Reason;
  const auto number = " (errno " + std::to_string(failure.number) + ")";
  if (failure.reason == Reason::cannotOpen) return "could not open instance lock" + number;
  if (failure.reason == Reason::heldByAnother) return "another instance is already running";
  return "could not acquire instance lock" + number;
}

/// Locks a file of the per-user folder, which is made where it is missing. Absent when `lock` is
/// held now, else why it is not.
std::optional<std::string> acquireLock(const char* name,
                                       std::unique_ptr<platform::FileLock>& lock) {
  auto& files = platform::desktop().files();
  const auto folder = UserDict::directory();
  if (const auto error = files.createDirectories(folder)) {
    return "could not create instance lock directory: " + *error;
  }
  auto result = files.lockExclusively(folder / name);
  if (const auto* failure = std::get_if<platform::FileLockFailure>(&result)) {
    return lockFailureMessage(*failure);
  }
  lock = std::move(std::get<std::unique_ptr<platform::FileLock>>(result));
  return std::nullopt;
}

}  // namespace

AppDelegate::AppDelegate(Instances instances) : instances_(instances) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  auto& desktop = platform::desktop();
  desktop.application().becomeAccessory();
  if (!mayRun()) {
    desktop.application().terminate();
    return;
  }
  loadPersistentData();
  warmUp();
  makeStatusItem();
  desktop.accessibility().isProcessTrusted(true);
  KeyTap::shared().onPauseChange = [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->updateIcon();
  };
  observe();
  observeInputSources();
  startTap();
  retryTimer_ =
      desktop.runLoop().repeating(kTickInterval, kTickTolerance, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->tick();
      });
  updateIcon();
}

void AppDelegate::applicationWillTerminate() {
  retryTimer_.reset();
  workspaceObservers_.clear();
  inputSourceObservers_.clear();
  KeyTap::shared().onPauseChange = nullptr;
  KeyTap::shared().stop();
  IgnoreList::flush();
  learningLock_.reset();
  instanceLock_.reset();
}

bool AppDelegate::mayRun() {
  if (instances_ == Instances::onlyOne) {
    if (olderInstanceRuns()) return false;
    if (const auto obstacle = acquireInstanceLock()) {
      log(*obstacle);
      return false;
    }
  }
  if (const auto obstacle = claimLearning()) {
    log(*obstacle + "; what is learned here stays in memory");
    IgnoreList::keepInMemory();
  }
  return true;
}

bool AppDelegate::olderInstanceRuns() const {
  auto& desktop = platform::desktop();
  const auto identifier = desktop.bundle().identifier().value_or(kDefaultIdentifier);
  const auto self = desktop.application().self();
  for (const auto& other : desktop.application().running(identifier)) {
    if (other.processIdentifier == self.processIdentifier) continue;
    if (goesFirst(other, self)) return true;
  }
  return false;
}

std::optional<std::string> AppDelegate::acquireInstanceLock() {
  return acquireLock(kInstanceLock, instanceLock_);
}

std::optional<std::string> AppDelegate::claimLearning() {
  auto& files = platform::desktop().files();
  if (instances_ == Instances::onlyOne) {
    // Only copies that may be many make this file: without it there is none to share with.
    if (!files.exists(UserDict::directory() / kLearningLock)) return std::nullopt;
    return acquireLock(kLearningLock, learningLock_);
  }
  // First the own lock, then the look at the other one: of two that start at once, each in its
  // own order, one at least sees the other.
  if (auto obstacle = acquireLock(kLearningLock, learningLock_)) return obstacle;
  if (!files.isLockedByAnother(UserDict::directory() / kInstanceLock)) return std::nullopt;
  learningLock_.reset();
  return lockFailureMessage({.reason = platform::FileLockFailure::Reason::heldByAnother});
}

void AppDelegate::loadPersistentData() {
  platform::desktop().files().removeLeftovers(UserDict::directory());
  IgnoreList::load(true);
  UserDict::seedIfMissing();
  UserDict::reload();
  BuiltinPacks::rebuild();
}

void AppDelegate::warmUp() {
  // Touched once here, so that the first key does not pay for loading.
  static_cast<void>(ShortFreq::en());
  static_cast<void>(ShortFreq::ru());
  static_cast<void>(Dict::en().contains("hello"));
  static_cast<void>(Dict::ru().contains("привет"));
  Proto::load();
  InputSource::prepareLayoutMaps();
}

void AppDelegate::makeStatusItem() {
  statusItem_ = platform::desktop().statusBar().createItem();
  if (statusItem_) statusItem_->setMenu(makeMenu());
}

void AppDelegate::observe() {
  auto& centre = platform::desktop().workspaceNotifications();
  for (const auto* name : kContextNotifications) {
    workspaceObservers_.push_back(centre.observe(name, [this] { contextChanged(); }));
  }
}

void AppDelegate::observeInputSources() {
  auto& centre = platform::desktop().inputSourceNotifications();
  for (const auto* name : kInputSourceNotifications) {
    inputSourceObservers_.push_back(centre.observe(name, [weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->inputSourcesChanged();
    }));
  }
}

void AppDelegate::contextChanged() {
  KeyTap::shared().resetWord();
}

void AppDelegate::inputSourcesChanged() {
  if (InputSource::prepareLayoutMaps())
    KeyTap::shared().invalidateInputSourceContext(WordState::ArmedRejection::keepBetweenWords);
  updateIcon();
}

void AppDelegate::startTap() {
  if (KeyTap::shared().start()) tapRunning_ = true;
  updateIcon();
}

void AppDelegate::tick() {
  UserDict::reloadIfChanged();
  if (InputSource::refreshKeyboardTypeIfNeeded()) {
    KeyTap::shared().invalidateInputSourceContext(WordState::ArmedRejection::keepBetweenWords);
    updateIcon();
  }
  if (tapRunning_) watchTap();
  if (!tapRunning_) startTap();
}

void AppDelegate::watchTap() {
  auto& keyTap = KeyTap::shared();
  const bool changed = keyTap.reArmIfDisabled() || keyTap.heartbeatRecreateIfStale(kSilenceLimit);
  tapRunning_ = keyTap.tapIsEnabled();
  if (changed || !tapRunning_) updateIcon();
}

}  // namespace tessarok
