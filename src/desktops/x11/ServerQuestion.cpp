#include "desktops/x11/ServerQuestion.h"

#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <cstdlib>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace tessarok::x11 {

// Through XCB: what Xlib asks it waits for.

void ServerQuestion::ask(Display* display) {
  auto* connection = XGetXCBConnection(display);
  number_ = xcb_get_input_focus(connection).sequence;
  xcb_flush(connection);
  display_ = display;
}

bool ServerQuestion::isAnswered() {
  if (display_ == nullptr) return true;
  void* answer = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(XGetXCBConnection(display_), number_, &answer, &error) == 0) return false;
  std::free(answer);
  std::free(error);
  display_ = nullptr;
  return true;
}

}  // namespace tessarok::x11
