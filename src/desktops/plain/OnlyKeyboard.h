#pragma once

#include "desktops/plain/PlainKeyboard.h"

namespace tessarok::platform {

/// The one keyboard that a desktop takes all keyboards to be, because it cannot tell them apart.
/// Main thread.
class OnlyKeyboard final : public PlainKeyboard {
 public:
  /// `clock` outlives this object.
  OnlyKeyboard(Clock& clock, PhysicalLayoutType layout) : PlainKeyboard(clock), layout_(layout) {}

  std::uint32_t type() override { return 0; }
  PhysicalLayoutType layoutType(std::uint32_t) override { return layout_; }

 private:
  PhysicalLayoutType layout_;
};

}  // namespace tessarok::platform
