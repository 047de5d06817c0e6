#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Event.h"

namespace tessarok::x11 {

class X11EventSource final : public platform::EventSource {};

/// A key or a button of the hardware, or a key that the program makes. Main thread.
class X11Event final : public platform::Event {
 public:
  X11Event() = default;
  X11Event(const X11Event&) = default;
  X11Event& operator=(const X11Event&) = delete;

  std::int64_t keyCode() const override { return code; }
  std::uint64_t flags() const override { return modifiers; }
  bool isAutorepeat() const override { return autorepeat; }
  std::int64_t sourceUserData() const override { return userData; }
  std::size_t unicodeString(std::span<char16_t> units) const override;
  std::unique_ptr<platform::Event> copy() const override;
  void setSource(platform::EventSource&) override {}
  void setType(platform::EventType newType) override { type = newType; }
  void setFlags(std::uint64_t flags) override { modifiers = flags; }
  void setAutorepeat(bool repeats) override { autorepeat = repeats; }
  void setSourceUserData(std::int64_t newUserData) override { userData = newUserData; }
  void setUnicodeString(std::u16string_view units) override {
    payload = units;
    isText = true;
  }

  platform::EventType type = platform::EventType::keyDown;
  std::int64_t code = 0;
  std::uint64_t modifiers = 0;
  std::int64_t userData = 0;
  bool autorepeat = false;
  /// The payload is what is to be typed, whatever the key.
  bool isText = false;
  /// The key on the X server; 0 for text.
  std::uint8_t xKey = 0;
  std::u16string payload;
};

}  // namespace tessarok::x11
