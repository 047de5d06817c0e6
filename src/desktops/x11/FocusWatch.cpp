#include "desktops/x11/FocusWatch.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <cstring>
#include <utility>

namespace tessarok::x11 {

FocusWatch::FocusWatch(XConnection& connection)
    : connection_(connection),
      activeWindowName_(XInternAtom(connection.display(), "_NET_ACTIVE_WINDOW", False)) {
  // The focus of the root window is that of no window at all.
  XSelectInput(connection_.display(), connection_.root(), PropertyChangeMask | FocusChangeMask);
  active_ = activeWindow();
  follow();
}

bool FocusWatch::follow() {
  if (connection_.isLost()) return false;
  auto* display = connection_.display();
  Window focus = 0;
  int revertTo = 0;
  XGetInputFocus(display, &focus, &revertTo);
  if (focus == focus_) return false;
  const auto former = std::exchange(focus_, focus);
  const auto isWindow = [this](Window window) {
    return window > PointerRoot && window != connection_.root();
  };
  if (isWindow(former)) XSelectInput(display, former, NoEventMask);
  // Of a window that goes away the focus goes without a word.
  if (isWindow(focus)) XSelectInput(display, focus, FocusChangeMask | StructureNotifyMask);
  return true;
}

unsigned long FocusWatch::activeWindow() const {
  if (connection_.isLost()) return 0;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  unsigned long window = 0;
  XGetWindowProperty(connection_.display(), connection_.root(), activeWindowName_, 0, 1, False,
                     XA_WINDOW, &type, &format, &count, &rest, &data);
  // Xlib hands numbers of 32 bits out as longs.
  if (data != nullptr && format == 32 && count == 1) std::memcpy(&window, data, sizeof window);
  if (data != nullptr) XFree(data);
  return window;
}

void FocusWatch::handle(const XEvent& event) {
  bool isChange = false;
  if (event.type == PropertyNotify) {
    if (event.xproperty.atom != activeWindowName_) return;
    const auto former = std::exchange(active_, activeWindow());
    isChange = former != active_;
  } else if (event.type == FocusIn || event.type == FocusOut) {
    const auto mode = event.xfocus.mode;
    isTaken_ = mode == NotifyGrab || mode == NotifyWhileGrabbed;
  }
  isChange = follow() || isChange;
  if (isChange && onChange) onChange();
}

}  // namespace tessarok::x11
