#pragma once

#include "platform/Keyboard.h"

namespace tessarok::macos {

/// The keyboard that was used last.
class MacKeyboard final : public platform::Keyboard {
 public:
  std::uint32_t type() override;
  platform::PhysicalLayoutType layoutType(std::uint32_t keyboardType) override;
  double secondsSinceLastKeyDown() override;
};

}  // namespace tessarok::macos
