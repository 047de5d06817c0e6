#pragma once

#include <cstdint>

#include "platform/PhysicalLayoutType.h"

namespace tessarok::platform {

/// The keyboard hardware in use. Main thread.
class Keyboard {
 public:
  virtual ~Keyboard() = default;
  /// A number for the model of the keyboard used last.
  [[nodiscard]] virtual std::uint32_t type() = 0;
  [[nodiscard]] virtual PhysicalLayoutType layoutType(std::uint32_t keyboardType) = 0;
  /// Seconds since the hardware last produced a key-down, whether or not a tap saw it; infinite
  /// before the first.
  [[nodiscard]] virtual double secondsSinceLastKeyDown() = 0;
};

}  // namespace tessarok::platform
