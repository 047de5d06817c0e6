#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Event.h"

namespace tessarok::terminal {

class TerminalEventSource final : public platform::EventSource {};

/// A key of the terminal, or one that the program makes. Main thread.
class TerminalEvent final : public platform::Event {
 public:
  TerminalEvent() = default;
  TerminalEvent(const TerminalEvent&) = default;
  TerminalEvent& operator=(const TerminalEvent&) = delete;

  std::int64_t keyCode() const override { return code; }
  std::uint64_t flags() const override { return modifiers; }
  bool isAutorepeat() const override { return false; }
  std::int64_t sourceUserData() const override { return userData; }
  std::size_t unicodeString(std::span<char16_t> units) const override;
  std::unique_ptr<platform::Event> copy() const override;
  void setSource(platform::EventSource&) override {}
  void setType(platform::EventType newType) override { type = newType; }
  void setFlags(std::uint64_t flags) override { modifiers = flags; }
  /// A terminal does not tell repeats from presses.
  void setAutorepeat(bool) override {}
  void setSourceUserData(std::int64_t newUserData) override { userData = newUserData; }
  void setUnicodeString(std::u16string_view units) override { payload = units; }

  /// Makes this the press of another key, keeping the storage of its strings.
  void become(std::int64_t newCode, std::uint64_t newModifiers);

  platform::EventType type = platform::EventType::keyDown;
  std::int64_t code = 0;
  std::uint64_t modifiers = 0;
  std::int64_t userData = 0;
  std::u16string payload;
  /// What the key sends to the program in the terminal; empty on events that the program makes.
  std::string bytes;
};

}  // namespace tessarok::terminal
