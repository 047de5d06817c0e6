#pragma once

#include <limits>
#include <memory>
#include <optional>

#include "platform/Clock.h"
#include "platform/Events.h"
#include "platform/Keyboard.h"
#include "platform/PlainEventSource.h"
#include "platform/SecureInput.h"
#include "platform/terminal/Pty.h"
#include "platform/terminal/TerminalEvent.h"

/// The services of the terminal desktop that have next to nothing to do. Main thread.
namespace tessarok::terminal {

class TerminalEvents final : public platform::Events {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    return std::make_unique<platform::PlainEventSource>();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource&, std::int64_t keyCode,
                                                       bool keyDown) override {
    auto event = std::make_unique<TerminalEvent>();
    event->type = keyDown ? platform::EventType::keyDown : platform::EventType::keyUp;
    event->code = keyCode;
    return event;
  }
};

/// A password is being asked for in the pseudo-terminal.
class TerminalSecureInput final : public platform::SecureInput {
 public:
  /// Off until there is a pseudo-terminal to ask. `pty` outlives this object.
  void watch(const Pty& pty) { pty_ = &pty; }
  bool isEnabled() override {
    if (pty_ == nullptr) return false;
    const auto modes = pty_->modes();
    // Of a terminal that is gone nothing is known, so nothing is remembered.
    return !modes || modes->isSecret();
  }

 private:
  const Pty* pty_ = nullptr;
};

/// The one keyboard that all terminals are taken to have.
class TerminalKeyboard final : public platform::Keyboard {
 public:
  explicit TerminalKeyboard(platform::Clock& clock) : clock_(clock) {}

  std::uint32_t type() override { return 0; }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override {
    return platform::PhysicalLayoutType::ansi;
  }
  double secondsSinceLastKeyDown() override {
    if (!lastKeyDownAt_) return std::numeric_limits<double>::infinity();
    return clock_.uptime() - *lastKeyDownAt_;
  }
  /// A key goes to the tap.
  void noteKeyDown() { lastKeyDownAt_ = clock_.uptime(); }

 private:
  platform::Clock& clock_;
  std::optional<double> lastKeyDownAt_;
};

}  // namespace tessarok::terminal
