#pragma once

#include "desktops/plain/PlainEvents.h"
#include "desktops/x11/X11Event.h"
#include "desktops/xkb/HardwareKeys.h"

namespace tessarok::x11 {

/// Makes the keys that the corrector posts. Main thread.
class X11Events final : public plain::PlainEvents<X11Event> {
 protected:
  void prepare(X11Event& event) override {
    // What becomes of the key that texts come with is decided by the text.
    if (event.code != 0) event.xKey = xkb::hardwareKeys::xKeyOf(event.code);
  }
};

}  // namespace tessarok::x11
