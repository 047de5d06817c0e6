#include "desktops/x11/Pace.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <poll.h>
#include <span>
#include <thread>

namespace tessarok::x11 {

namespace {

using namespace std::chrono_literals;

/// For all the waiting within one fix. An application that takes longer is busy with something
/// else, and the person's next keys wait behind this.
constexpr auto kPatience = 200ms;
/// A window that says that it answers and did not so many times is not asked again.
constexpr int kMostLateTimes = 3;
/// An answer that takes no longer comes from an application that has nothing else to do: text
/// entries take half of this, the word processor three to twenty times as long.
constexpr auto kQuick = 200us;
/// Between the two questions after a key.
constexpr auto kLongestPause = 10ms;
/// More windows than this between the one with the focus and the one that its program speaks for
/// are not to be found.
constexpr int kMostParents = 8;

}  // namespace

void Pace::begin() {
  window_ = 0;
  if (!openListener()) return;
  const auto window = windowInFocus();
  if (window == 0 || (window == lateWindow_ && lateTimes_ >= kMostLateTimes)) return;
  // The answers go to the root window, for the window manager.
  XSelectInput(listener_, DefaultRootWindow(listener_), SubstructureNotifyMask);
  XSync(listener_, False);
  if (isListenerLost_) return;
  // What was slow once is likely to be so again, but not for ever.
  slowest_ = window == lastWindow_ ? slowest_ / 2 : Clock::duration::zero();
  window_ = lastWindow_ = window;
  deadline_ = Clock::now() + kPatience;
}

void Pace::end() {
  if (listener_ == nullptr || isListenerLost_) return;
  XSelectInput(listener_, DefaultRootWindow(listener_), NoEventMask);
  XSync(listener_, True);
  window_ = 0;
}

bool Pace::wait() {
  if (window_ == 0) return false;
  const bool hasTaken = askUntilTaken();
  if (!hasTaken) giveUp();
  return hasTaken;
}

bool Pace::askUntilTaken() {
  if (!ask()) return false;
  // An application that is busy with a key may look at all that has arrived meanwhile, and answer
  // before it is done. So it is given the time of its slowest answer again, and asked again.
  if (slowest_ > kQuick) {
    std::this_thread::sleep_for(std::min(slowest_, Clock::duration(kLongestPause)));
  }
  return ask();
}

bool Pace::ask() {
  const auto before = Clock::now();
  ping();
  if (!awaitAnswer()) return false;
  slowest_ = std::max(slowest_, Clock::now() - before);
  return true;
}

bool Pace::openListener() {
  if (listener_ != nullptr) return !isListenerLost_;
  listener_ = XOpenDisplay(DisplayString(connection_.display()));
  if (listener_ == nullptr) return false;
  XSetIOErrorExitHandler(
      listener_, [](Display*, void* data) { static_cast<Pace*>(data)->isListenerLost_ = true; },
      this);
  // Nobody who holds the server is to hold this process.
  XTestGrabControl(listener_, True);
  protocolsName_ = XInternAtom(listener_, "WM_PROTOCOLS", False);
  pingName_ = XInternAtom(listener_, "_NET_WM_PING", False);
  return !isListenerLost_;
}

unsigned long Pace::windowInFocus() const {
  Window window = None;
  int revert = 0;
  XGetInputFocus(listener_, &window, &revert);
  for (int i = 0; i < kMostParents && window != None && window != PointerRoot; ++i) {
    if (answersPings(window)) return window;
    Window root = None;
    Window parent = None;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(listener_, window, &root, &parent, &children, &count) == 0) return 0;
    if (children != nullptr) XFree(children);
    window = parent;
  }
  return 0;
}

bool Pace::answersPings(unsigned long window) const {
  Atom* names = nullptr;
  int count = 0;
  if (XGetWMProtocols(listener_, window, &names, &count) == 0) return false;
  const std::span protocols(names, static_cast<std::size_t>(count));
  const bool found = std::ranges::find(protocols, pingName_) != protocols.end();
  XFree(names);
  return found;
}

void Pace::ping() {
  if (connection_.isLost()) return;
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window_;
  event.xclient.message_type = protocolsName_;
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(pingName_);
  event.xclient.data.l[1] = ++number_;
  event.xclient.data.l[2] = static_cast<long>(window_);
  // On the connection that the keys go out on, so that it arrives behind them.
  XSendEvent(connection_.display(), window_, False, NoEventMask, &event);
  connection_.flush();
}

bool Pace::awaitAnswer() {
  while (!readAnswer()) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now());
    if (isListenerLost_ || connection_.isLost() || left <= 0ms) return false;
    pollfd waiting{ConnectionNumber(listener_), POLLIN, 0};
    ::poll(&waiting, 1, static_cast<int>(left.count()));
  }
  lateTimes_ = 0;
  return true;
}

bool Pace::readAnswer() {
  bool found = false;
  while (!isListenerLost_ && XPending(listener_) > 0) {
    XEvent event;
    XNextEvent(listener_, &event);
    found = found || (event.type == ClientMessage && event.xclient.message_type == protocolsName_ &&
                      event.xclient.data.l[1] == number_ &&
                      static_cast<unsigned long>(event.xclient.data.l[2]) == window_);
  }
  return found;
}

void Pace::giveUp() {
  lateTimes_ = window_ == lateWindow_ ? lateTimes_ + 1 : 1;
  lateWindow_ = window_;
  window_ = 0;
}

}  // namespace tessarok::x11
