#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Event.h"

namespace tessarok::virtualdesktop {

class VirtualEventSource final : public platform::EventSource {};

/// An event of the virtual desktop: plain values.
class VirtualEvent final : public platform::Event {
 public:
  VirtualEvent() = default;
  VirtualEvent(const VirtualEvent&) = default;

  std::int64_t keyCode() const override { return code; }
  std::uint64_t flags() const override { return modifiers; }
  bool isAutorepeat() const override { return autorepeat; }
  std::int64_t sourceUserData() const override { return userData; }
  std::size_t unicodeString(std::span<char16_t> units) const override;
  std::unique_ptr<platform::Event> copy() const override;
  void setSource(platform::EventSource&) override {}
  void setType(platform::EventType newType) override { type = newType; }
  void setFlags(std::uint64_t flags) override { modifiers = flags; }
  void setAutorepeat(bool newAutorepeat) override { autorepeat = newAutorepeat; }
  void setSourceUserData(std::int64_t newUserData) override { userData = newUserData; }
  void setUnicodeString(std::u16string_view units) override { payload = units; }

  platform::EventType type = platform::EventType::keyDown;
  std::int64_t code = 0;
  std::uint64_t modifiers = 0;
  bool autorepeat = false;
  std::int64_t userData = 0;
  std::u16string payload;
  /// The program posted it, rather than the person.
  bool posted = false;
};

}  // namespace tessarok::virtualdesktop
