#include "desktops/x11/X11EventTaps.h"

#include <X11/X.h>
#include <utility>

#include "desktops/xkb/HardwareKeys.h"
#include "platform/EventFlags.h"
#include "typing/InputSource.h"

namespace tessarok::x11 {

namespace {

using platform::EventType;
namespace eventFlags = platform::eventFlags;

/// Seconds between two looks at the keyboards while a key is down.
constexpr double kIdleCheck = 0.02;
constexpr std::uint64_t kShortcut =
    eventFlags::control | eventFlags::option | eventFlags::command | eventFlags::shift;

class TapSource final : public platform::RunLoopSource {};

EventType typeOfButton(int button) {
  if (button == 1) return EventType::leftMouseDown;
  return button == 3 ? EventType::rightMouseDown : EventType::otherMouseDown;
}

/// The wheels come as buttons, and move no caret.
bool isWheel(int button) {
  return button >= 4 && button <= 7;
}

}  // namespace

class X11EventTaps::Proxy final : public platform::EventTapProxy {
 public:
  explicit Proxy(X11EventTaps& taps) : taps_(taps) {}
  void post(const platform::Event& event) override {
    taps_.posted_.push_back(static_cast<const X11Event&>(event));
  }

 private:
  X11EventTaps& taps_;
};

class X11EventTaps::Tap final : public platform::EventTap {
 public:
  Tap(X11EventTaps& taps, platform::EventTapCallback callback, void* userData)
      : taps_(taps), callback_(callback), userData_(userData) {}
  ~Tap() override { leave(); }

  bool isEnabled() const override { return isEnabled_; }
  void enable(bool enabled) override {
    if (isEnabled_ == enabled || taps_.tap_ != this) return;
    if (enabled) {
      isEnabled_ = taps_.holdWhenIdle();
    } else {
      isEnabled_ = false;
      taps_.letGo();
    }
  }
  void invalidate() override { leave(); }
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int) override {
    return std::make_unique<TapSource>();
  }

  /// The keyboards are no longer held.
  void disable() { isEnabled_ = false; }
  platform::Event* call(X11Event& event) {
    return callback_(taps_.proxy_.get(), event.type, &event, userData_);
  }

 private:
  void leave() {
    if (taps_.tap_ != this) return;
    enable(false);
    taps_.tap_ = nullptr;
  }

  X11EventTaps& taps_;
  platform::EventTapCallback callback_;
  void* userData_;
  bool isEnabled_ = false;
};

X11EventTaps::X11EventTaps(const Parts& parts, xkb::ManualKey manualKey, xkb::PauseKey pauseKey)
    : parts_(parts),
      manualKey_(manualKey),
      pauseKey_(pauseKey),
      proxy_(std::make_unique<Proxy>(*this)) {
  parts_.keyboards.onGone = [this](int device) { releaseKeysOf(device); };
}

X11EventTaps::~X11EventTaps() {
  parts_.keyboards.onGone = nullptr;
}

std::unique_ptr<platform::EventTap> X11EventTaps::create(std::uint64_t,
                                                         platform::EventTapCallback callback,
                                                         void* userData) {
  if (isClosed_) return nullptr;
  auto tap = std::make_unique<Tap>(*this, callback, userData);
  tap_ = tap.get();
  tap->enable(true);
  // Destroyed, the tap takes itself off.
  return tap->isEnabled() ? std::move(tap) : nullptr;
}

bool X11EventTaps::holdWhenIdle() {
  if (isClosed_) return false;
  const auto wait = ++wait_;
  if (parts_.keyboards.isIdle()) return hold();
  parts_.runLoop.after(kIdleCheck, [this, wait] {
    if (wait != wait_ || tap_ == nullptr || !tap_->isEnabled()) return;
    if (!holdWhenIdle()) tap_->disable();
  });
  return true;
}

bool X11EventTaps::hold() {
  // First of all: from here on somebody has to watch over this process.
  if (onHeld) onHeld(true);
  if (isClosed_) return false;
  if (const auto refusal = parts_.keyboards.hold()) {
    refuse(refusal.reason());
    return false;
  }
  parts_.layouts.markStateStale();
  parts_.layouts.markKeymapStale();
  return true;
}

void X11EventTaps::letGo() {
  ++wait_;
  held_.clear();
  posted_.clear();
  parts_.keyboards.letGo();
  if (onHeld) onHeld(false);
}

void X11EventTaps::refuse(const std::string& reason) {
  if (tap_ != nullptr) tap_->disable();
  letGo();
  if (onRefused) onRefused(reason);
}

void X11EventTaps::close() {
  isClosed_ = true;
  if (tap_ != nullptr) tap_->disable();
  letGo();
}

void X11EventTaps::updateKeyboards(const KeyboardChanges& changes) {
  if (const auto refusal = parts_.keyboards.update(changes)) return refuse(refusal.reason());
  if (!parts_.keyboards.isWaiting()) return;
  parts_.runLoop.after(kIdleCheck, [this] {
    if (parts_.keyboards.isWaiting()) updateKeyboards({});
  });
}

std::uint64_t X11EventTaps::flags() const {
  const auto modifiers = parts_.layouts.state().modifiers();
  std::uint64_t flags = 0;
  if ((modifiers & ShiftMask) != 0) flags |= eventFlags::shift;
  if ((modifiers & LockMask) != 0) flags |= eventFlags::capsLock;
  if ((modifiers & ControlMask) != 0) flags |= eventFlags::control;
  if ((modifiers & Mod1Mask) != 0) flags |= eventFlags::option;
  if ((modifiers & Mod4Mask) != 0) flags |= eventFlags::command;
  return flags;
}

void X11EventTaps::prepare(std::uint8_t key, bool repeats) {
  const auto& state = parts_.layouts.state();
  const auto& keymap = parts_.layouts.keymap();
  event_.type = EventType::keyDown;
  event_.xKey = key;
  event_.isText = false;
  event_.userData = 0;
  event_.autorepeat = repeats;
  event_.code = keymap.caretMover(key, state).value_or(xkb::hardwareKeys::codeOf(key));
  event_.modifiers = flags();
  keymap.text(key, state, event_.payload);
  if (key == xkb::hardwareKeys::kPause && manualKey_.pause && (event_.modifiers & kShortcut) == 0) {
    event_.code = keyCodes::space;
    event_.modifiers |= eventFlags::option;
  } else if (event_.code == keyCodes::space && !manualKey_.altSpace &&
             (event_.modifiers & eventFlags::option) != 0) {
    event_.code = xkb::hardwareKeys::kNoKey;
  } else if (xkb::PauseKey::isOne(event_.code) &&
             !pauseKey_.pauses(event_.code, InputSource::languageOf(parts_.layouts.current()))) {
    // The corrector knows the keys that pause by their codes; this one is a letter.
    event_.code = xkb::hardwareKeys::kNoKey;
  }
}

bool X11EventTaps::send(X11Event& event) {
  return tap_ == nullptr || !tap_->isEnabled() || tap_->call(event) != nullptr;
}

void X11EventTaps::pass(std::uint8_t key) {
  // A key that repeats, or that is down on a second keyboard as well: applications do not count a
  // key as pressed that they have not seen released.
  if (parts_.typist.isDown(key)) return parts_.typist.repeat(key);
  parts_.typist.press(key);
}

void X11EventTaps::keyDown(int device, std::uint8_t key, bool repeats) {
  if (tap_ == nullptr || !tap_->isEnabled()) return;
  auto& layouts = parts_.layouts;
  // Switches of the layout take effect before the key, as they did in the server.
  layouts.announceChanges();
  parts_.runLoop.runQueue();
  if (layouts.keymap().changesState(key, layouts.state())) {
    held_[key] = {device, std::nullopt};
    pass(key);
    layouts.markStateStale();
    return;
  }
  const bool wasLatched =
      layouts.state().latchedModifiers != 0 || layouts.state().latchedGroup != 0;
  prepare(key, repeats);
  held_[key] = {device, event_.code};
  const bool passes = send(event_);
  if (passes) pass(key);
  if (wasLatched) layouts.markStateStale();
  typePosted();
}

void X11EventTaps::keyUp(int device, std::uint8_t key) {
  const auto found = held_.find(key);
  if (found == held_.end() || found->second.device != device) return;
  const auto held = found->second;
  held_.erase(found);
  if (!held.code) {
    parts_.typist.release(key);
    parts_.layouts.markStateStale();
    return;
  }
  event_.type = EventType::keyUp;
  event_.xKey = key;
  event_.code = *held.code;
  event_.userData = 0;
  event_.autorepeat = false;
  // Whatever the tap makes of it, a key does not stay down.
  static_cast<void>(send(event_));
  parts_.typist.release(key);
  typePosted();
}

void X11EventTaps::passOn(std::uint8_t key, bool isDown) {
  if (isDown) return pass(key);
  parts_.typist.release(key);
}

void X11EventTaps::releaseKeysOf(int device) {
  std::vector<std::uint8_t> keys;
  for (const auto& [key, held] : held_) {
    if (held.device == device) keys.push_back(key);
  }
  for (const auto key : keys)
    keyUp(device, key);
}

void X11EventTaps::buttonDown(int button) {
  if (isWheel(button) || tap_ == nullptr || !tap_->isEnabled()) return;
  event_.type = typeOfButton(button);
  event_.code = 0;
  event_.modifiers = 0;
  event_.userData = 0;
  event_.payload.clear();
  static_cast<void>(send(event_));
}

void X11EventTaps::typePosted() {
  if (posted_.empty()) return;
  std::vector<X11Event> passed;
  // The tap sees its own events too, and may post more meanwhile.
  for (std::size_t i = 0; i < posted_.size(); ++i) {
    X11Event posted(posted_[i]);
    if (send(posted)) passed.push_back(posted);
  }
  posted_.clear();
  parts_.typist.type(passed);
}

}  // namespace tessarok::x11
