#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "desktops/plain/PlainEvent.h"

namespace tessarok::terminal {

/// A key of the terminal, or one that the program makes. A terminal does not tell repeats from
/// presses. Main thread.
class TerminalEvent final : public plain::PlainEvent {
 public:
  TerminalEvent() = default;
  TerminalEvent(const TerminalEvent&) = default;
  TerminalEvent& operator=(const TerminalEvent&) = delete;

  std::unique_ptr<platform::Event> copy() const override {
    return std::make_unique<TerminalEvent>(*this);
  }

  /// Makes this the press of another key, keeping the storage of its strings.
  void become(std::int64_t newCode, std::uint64_t newModifiers) {
    type = platform::EventType::keyDown;
    code = newCode;
    modifiers = newModifiers;
    userData = 0;
    isText = false;
    payload.clear();
    bytes.clear();
  }

  /// What the key sends to the program in the terminal; empty on events that the program makes.
  std::string bytes;
};

}  // namespace tessarok::terminal
