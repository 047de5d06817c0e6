#pragma once

#include "desktops/plain/PlainKeyboard.h"
#include "desktops/x11/Layouts.h"

namespace tessarok::x11 {

/// The keyboard as far as it is one: its number is that of the keymap, and all keyboards of an X
/// server have the same. Main thread.
class X11Keyboard final : public plain::PlainKeyboard {
 public:
  /// Both outlive this object.
  X11Keyboard(platform::Clock& clock, Layouts& layouts) : PlainKeyboard(clock), layouts_(layouts) {}

  std::uint32_t type() override { return layouts_.generation(); }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override {
    return layouts_.keymap().physicalLayout();
  }

 private:
  Layouts& layouts_;
};

}  // namespace tessarok::x11
