#pragma once

#include <limits>
#include <optional>

#include "platform/Clock.h"
#include "platform/Keyboard.h"

namespace tessarok::virtualdesktop {

/// The keyboard hardware of the virtual desktop.
class VirtualKeyboard final : public platform::Keyboard {
 public:
  static constexpr std::uint32_t kDefaultType = 40;

  explicit VirtualKeyboard(platform::Clock& clock) : clock_(clock) {}

  std::uint32_t type() override { return keyboardType; }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override { return physicalLayout; }
  double secondsSinceLastKeyDown() override {
    if (!lastKeyDownAt_) return std::numeric_limits<double>::infinity();
    return clock_.uptime() - *lastKeyDownAt_;
  }
  /// A key went down, whether or not the tap sees it.
  void noteKeyDown() { lastKeyDownAt_ = clock_.uptime(); }

  std::uint32_t keyboardType = kDefaultType;
  platform::PhysicalLayoutType physicalLayout = platform::PhysicalLayoutType::ansi;

 private:
  platform::Clock& clock_;
  std::optional<double> lastKeyDownAt_;
};

}  // namespace tessarok::virtualdesktop
