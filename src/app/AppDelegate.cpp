// Launch, maintenance and shutdown.

#include "app/AppDelegate.h"

#include <chrono>
#include <string>
#include <thread>

#include "platform/Desktop.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"
#include "words/BuiltinPacks.h"
#include "words/Detector.h"
#include "words/Dict.h"
#include "words/FolderLock.h"
#include "words/IgnoreList.h"
#include "words/Proto.h"
#include "words/ShortFreq.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

using platform::Notification;

constexpr const char* kDefaultIdentifier = "app.tessarok";
/// Seconds between two maintenance ticks, and how late one may be.
constexpr double kTickInterval = 2.0;
constexpr double kTickTolerance = 0.5;
constexpr double kSilenceLimit = 5.0;
/// How long a launch waits for the person's lists, without which no word is put right. Usually they
/// take a millisecond; with a fifth of a second, first words stayed as typed now and then beside
/// eleven programs that compute. On a disk that takes longer they still do.
constexpr auto kListPatience = std::chrono::milliseconds(2000);
/// The same where keys wait meanwhile.
constexpr auto kListPatienceWithKeys = std::chrono::milliseconds(200);

/// After each of these the caret may be in another place.
constexpr Notification kContextNotifications[] = {
    Notification::applicationActivated,
    Notification::willSleep,
    Notification::didWake,
    Notification::screensDidSleep,
    Notification::sessionResignedActive,
    Notification::sessionBecameActive,
};
constexpr Notification kInputSourceNotifications[] = {
    Notification::selectedInputSourceChanged,
    Notification::enabledInputSourcesChanged,
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

}  // namespace

AppDelegate::AppDelegate(Instances instances, Keys keys) : instances_(instances), keys_(keys) {}

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
  waitForLists();
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
  UserDict::stop();
  // Before the lock of the whole desktop: who takes that finds the files written.
  IgnoreList::leave();
  instanceLock_.reset();
}

bool AppDelegate::mayRun() {
  if (instances_ == Instances::many) return true;
  if (olderInstanceRuns()) return false;
  const auto obstacle = FolderLock::acquire(FolderLock::kInstance, instanceLock_);
  if (obstacle) platform::desktop().systemLog().write("Tessarok: " + obstacle->message);
  return !obstacle;
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

void AppDelegate::loadPersistentData() {
  using Company = IgnoreList::Company;
  IgnoreList::join(instances_ == Instances::many ? Company::many : Company::onlyOne);
  IgnoreList::load(IgnoreList::Recovery::onDisk);
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

void AppDelegate::waitForLists() const {
  const auto deadline = std::chrono::steady_clock::now() +
                        (keys_ == Keys::wait ? kListPatienceWithKeys : kListPatience);
  while (Detector::isWaitingForLists() && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void AppDelegate::makeStatusItem() {
  statusItem_ = platform::desktop().statusBar().createItem();
  if (statusItem_) statusItem_->setMenu(makeMenu());
}

void AppDelegate::observe() {
  auto& centre = platform::desktop().workspaceNotifications();
  for (const auto notification : kContextNotifications) {
    workspaceObservers_.push_back(centre.observe(notification, [this] { contextChanged(); }));
  }
}

void AppDelegate::observeInputSources() {
  auto& centre = platform::desktop().inputSourceNotifications();
  for (const auto notification : kInputSourceNotifications) {
    inputSourceObservers_.push_back(centre.observe(notification, [weak = weak_from_this()] {
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
  IgnoreList::tick();
  if (Dict::noticeChanges()) updateIcon();
  Dict::askAnew();
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
