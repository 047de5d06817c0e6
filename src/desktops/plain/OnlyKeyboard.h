#pragma once

#include "desktops/plain/PlainKeyboard.h"

namespace tessarok::plain {

/// The one keyboard that a desktop takes all keyboards to be, because it cannot tell them apart.
/// Main thread.
class OnlyKeyboard final : public PlainKeyboard {
 public:
  /// `clock` outlives this object.
  OnlyKeyboard(platform::Clock& clock, platform::PhysicalLayoutType layout)
      : PlainKeyboard(clock), layout_(layout) {}

  std::uint32_t type() override { return 0; }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override { return layout_; }

 private:
  platform::PhysicalLayoutType layout_;
};

}  // namespace tessarok::plain
