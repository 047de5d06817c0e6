#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tessarok::platform {

/// One keyboard layout of the desktop. Main thread.
class InputSourceHandle {
 public:
  InputSourceHandle() = default;
  InputSourceHandle(const InputSourceHandle&) = delete;
  InputSourceHandle& operator=(const InputSourceHandle&) = delete;
  virtual ~InputSourceHandle() = default;

  /// Such as "com.apple.keylayout.US"; absent when the source has none.
  [[nodiscard]] virtual std::optional<std::string> identifier() const = 0;
  /// What the person knows the layout by, such as "us": the identifier where they see that itself.
  [[nodiscard]] virtual std::string name() const { return identifier().value_or(""); }
  /// Whether the layout can tell which character a key gives. An input method cannot.
  [[nodiscard]] virtual bool hasLayoutData() const = 0;
  /// What a key shows with or without Shift on a keyboard type, dead keys as plain characters,
  /// in UTF-16 units. Empty when the key gives nothing or the system reports an error.
  [[nodiscard]] virtual std::u16string translate(std::uint16_t keyCode, bool shift,
                                                 std::uint32_t keyboardType) const = 0;
};

}  // namespace tessarok::platform
