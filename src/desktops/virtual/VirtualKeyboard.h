#pragma once

#include "desktops/plain/PlainKeyboard.h"

namespace tessarok::virtualdesktop {

/// The keyboard hardware of the virtual desktop. Main thread.
class VirtualKeyboard final : public plain::PlainKeyboard {
 public:
  static constexpr std::uint32_t kDefaultType = 40;

  using PlainKeyboard::PlainKeyboard;

  std::uint32_t type() override { return keyboardType; }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override { return physicalLayout; }

  std::uint32_t keyboardType = kDefaultType;
  platform::PhysicalLayoutType physicalLayout = platform::PhysicalLayoutType::ansi;
};

}  // namespace tessarok::virtualdesktop
