// The tap's life and its watchdog: the system silently disables a tap that is too slow or loses
// its permission, and keys can stop reaching a tap that still calls itself enabled.

#include "typing/KeyTap.h"

#include <cmath>

#include "platform/Desktop.h"
#include "typing/Uptime.h"
#include "words/Dict.h"

namespace tessarok {

namespace {

using platform::EventType;

constexpr std::uint64_t maskOf(EventType type) {
  return std::uint64_t{1} << static_cast<std::uint32_t>(type);
}

/// Clicks and keys; changes of modifiers alone are of no interest.
constexpr std::uint64_t kEventMask =
    maskOf(EventType::leftMouseDown) | maskOf(EventType::rightMouseDown) |
    maskOf(EventType::keyDown) | maskOf(EventType::keyUp) | maskOf(EventType::otherMouseDown);
static_assert(kEventMask == 0x2000C0A);

/// A tap that was silent for less is never judged deaf, seconds.
constexpr double kShortestSilence = 5.0;
/// The hardware must have typed at least so recently, seconds.
constexpr double kRecentTyping = 5.0;
/// ... and at least so long after the last key that the tap saw, seconds.
constexpr double kMissedTyping = 2.0;

platform::Event* tapCallback(platform::EventTapProxy* proxy, EventType type, platform::Event* event,
                             void* userData) {
  if (userData == nullptr) return event;
  auto* keyTap = static_cast<KeyTap*>(userData);
  const auto alive = keyTap->weak_from_this().lock();
  return keyTap->handle(proxy, type, event);
}

/// Whether the hardware typed lately while the tap, silent for `silence` seconds, saw nothing.
bool hardwareTypedUnseen(double silence) {
  const double hardware = platform::desktop().keyboard().secondsSinceLastKeyDown();
  return std::isfinite(hardware) && hardware >= 0 && hardware <= kRecentTyping &&
         hardware + kMissedTyping < silence;
}

}  // namespace

KeyTap& KeyTap::shared() {
  // Never destroyed: the tap and late calls of the main queue point to it until the very end.
  static const auto* const instance = new std::shared_ptr<KeyTap>(std::make_shared<KeyTap>());
  return **instance;
}

KeyTap::KeyTap()
    : shiftFixEnabled(platform::desktop().userDefaults().boolean(kShiftFixKey).value_or(true)) {}

KeyTap::~KeyTap() {
  stop();
}

bool KeyTap::start() {
  if (platform::desktop().secureInput().isEnabled()) {
    resetWord();
    return false;
  }
  if (tap_ == nullptr) return createTap();
  return tap_->isEnabled() || recreate();
}

bool KeyTap::createTap() {
  auto& desktop = platform::desktop();
  auto tap = desktop.eventTaps().create(kEventMask, &tapCallback, this);
  if (!tap) return false;
  tap_ = std::move(tap);
  runLoopSource_ = tap_->createRunLoopSource(0);
  if (runLoopSource_) desktop.runLoop().add(*runLoopSource_);
  tap_->enable(true);
  lastKeyEventAt_ = uptime();
  dbg([this] {
    const auto spelled = &DiagnosticLog::spelled;
    return std::string("tap started enabled=") + spelled(tapIsEnabled()) +
           " auto=" + spelled(enabled) +
           " postAccess=" + spelled(platform::desktop().eventTaps().preflightPostAccess()) +
           " dictionaries=" + spelled(Dict::en().isAvailable() && Dict::ru().isAvailable());
  });
  return true;
}

bool KeyTap::recreate() {
  stop();
  start();
  // Keys may have passed unseen, so the word under the caret is not known.
  word_.forget();
  return tapIsEnabled();
}

void KeyTap::stop() {
  resetWord();
  swallowedKeyUps_.clear();
  lastKeyEventAt_ = 0;
  callbackProxy_ = nullptr;
  if (tap_) {
    tap_->enable(false);
    tap_->invalidate();
  }
  if (runLoopSource_) platform::desktop().runLoop().remove(*runLoopSource_);
  tap_.reset();
  runLoopSource_.reset();
}

bool KeyTap::reArmIfDisabled() {
  if (platform::desktop().secureInput().isEnabled()) {
    resetWord();
    lastKeyEventAt_ = uptime();
    return false;
  }
  if (!tap_) return start();
  if (tap_->isEnabled()) return false;
  dbg([] { return "*** WATCHDOG: tap disabled — recreating ***"; });
  return recreate();
}

bool KeyTap::heartbeatRecreateIfStale(double silenceLimit) {
  const double now = uptime();
  if (platform::desktop().secureInput().isEnabled()) {
    resetWord();
    lastKeyEventAt_ = now;
    return false;
  }
  if (!tapIsEnabled() || !enabled || lastKeyEventAt_ <= 0) return false;
  if (now < pausedUntil_) return false;
  const double silence = now - lastKeyEventAt_;
  // Also for a limit that is no number.
  const double limit = silenceLimit >= kShortestSilence ? silenceLimit : kShortestSilence;
  if (!(silence > limit) || !hardwareTypedUnseen(silence)) return false;
  dbg([] { return "*** WATCHDOG: hardware keystrokes missing from tap — recreating ***"; });
  return recreate();
}

}  // namespace tessarok
