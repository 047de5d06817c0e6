#pragma once

#include <cstdint>
#include <fcitx-utils/key.h>
#include <memory>
#include <string>

#include "platform/Event.h"

namespace tessarok::fcitx5 {

class FcitxEventSource final : public platform::EventSource {};

/// A key that a text field's program handed to Fcitx, or one that the corrector makes. Main thread.
class FcitxEvent final : public platform::Event {
 public:
  FcitxEvent() = default;
  FcitxEvent(const FcitxEvent&) = default;
  FcitxEvent& operator=(const FcitxEvent&) = delete;

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
  std::u16string payload;
  /// The key as the text field's program sent it; for handing it back.
  fcitx::Key key;
};

}  // namespace tessarok::fcitx5
