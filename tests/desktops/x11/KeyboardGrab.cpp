#include "tests/desktops/x11/KeyboardGrab.h"

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>
#include <stdexcept>

namespace tessarok::testing {

KeyboardGrab::KeyboardGrab(const XServer& server) : display_(XOpenDisplay(server.name().c_str())) {
  if (display_ == nullptr) throw std::runtime_error("the X server takes no other program");
  unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
  XIEventMask mask{server.keyboard(), sizeof bits, bits};
  const int result = XIGrabDevice(display_, server.keyboard(), DefaultRootWindow(display_),
                                  CurrentTime, None, GrabModeAsync, GrabModeAsync, False, &mask);
  if (result != GrabSuccess) {
    XCloseDisplay(display_);
    throw std::runtime_error("another program cannot hold the keyboard");
  }
  XSync(display_, False);
}

KeyboardGrab::~KeyboardGrab() {
  // With its connection a program loses what it holds.
  XCloseDisplay(display_);
}

}  // namespace tessarok::testing
