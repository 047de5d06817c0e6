#pragma once

#include <limits>
#include <memory>
#include <optional>

#include "platform/Clock.h"
#include "platform/Events.h"
#include "platform/Keyboard.h"
#include "platform/PlainEventSource.h"
#include "platform/SecureInput.h"
#include "platform/x11/FocusWatch.h"
#include "platform/x11/Layouts.h"
#include "platform/x11/X11Event.h"
#include "platform/xkb/HardwareKeys.h"

/// The services of the X11 desktop that have next to nothing to do. Main thread.
namespace tessarok::x11 {

class X11Events final : public platform::Events {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    return std::make_unique<platform::PlainEventSource>();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource&, std::int64_t keyCode,
                                                       bool keyDown) override {
    auto event = std::make_unique<X11Event>();
    event->type = keyDown ? platform::EventType::keyDown : platform::EventType::keyUp;
    event->code = keyCode;
    // What becomes of the key that texts come with is decided by the text.
    if (keyCode != 0) event->xKey = xkb::hardwareKeys::xKeyOf(keyCode);
    return event;
  }
};

/// The keyboard as far as it is one: its number is that of the keymap, and all keyboards of an X
/// server have the same.
class X11Keyboard final : public platform::Keyboard {
 public:
  /// Both outlive this object.
  X11Keyboard(platform::Clock& clock, Layouts& layouts) : clock_(clock), layouts_(layouts) {}

  std::uint32_t type() override { return layouts_.generation(); }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override {
    return layouts_.keymap().physicalLayout();
  }
  double secondsSinceLastKeyDown() override {
    if (!lastKeyDownAt_) return std::numeric_limits<double>::infinity();
    return clock_.uptime() - *lastKeyDownAt_;
  }
  /// A key went down, whoever sees it.
  void noteKeyDown() { lastKeyDownAt_ = clock_.uptime(); }

 private:
  platform::Clock& clock_;
  Layouts& layouts_;
  std::optional<double> lastKeyDownAt_;
};

/// Another program has taken the keyboard, or the session says that a password is being typed.
class X11SecureInput final : public platform::SecureInput {
 public:
  /// Both outlive this object; `session` may be null.
  X11SecureInput(const FocusWatch& focus, platform::SecureInput* session)
      : focus_(focus), session_(session) {}

  bool isEnabled() override {
    return focus_.isKeyboardTaken() || (session_ != nullptr && session_->isEnabled());
  }

 private:
  const FocusWatch& focus_;
  platform::SecureInput* session_;
};

}  // namespace tessarok::x11
