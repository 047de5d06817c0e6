#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/Event.h"

namespace tessarok::plain {

/// An event of a desktop whose events are plain values of this program. Each such desktop adds what
/// it has to know besides. Main thread.
class PlainEvent : public platform::Event {
 public:
  PlainEvent() = default;
  PlainEvent& operator=(const PlainEvent&) = delete;

  std::int64_t keyCode() const override { return code; }
  std::uint64_t flags() const override { return modifiers; }
  bool isAutorepeat() const override { return autorepeat; }
  std::int64_t sourceUserData() const override { return userData; }
  std::size_t unicodeString(std::span<char16_t> units) const override {
    std::copy_n(payload.begin(), std::min(units.size(), payload.size()), units.begin());
    return payload.size();
  }
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
  /// The payload was set: it is what is to be typed, whatever the key.
  bool isText = false;
  std::u16string payload;

 protected:
  PlainEvent(const PlainEvent&) = default;
};

}  // namespace tessarok::plain
