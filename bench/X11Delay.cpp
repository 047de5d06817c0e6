// What the program adds to the way of a key: from the hardware event to the event in an
// application, with and without the program, and how long a word takes to be put right on the
// screen.
//
// usage: tessarok_x11_bench

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

// Last, because of the plain words that Xlib defines as macros.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

using namespace tessarok::testing;
using Clock = std::chrono::steady_clock;

constexpr int kKeys = 2000;
constexpr int kWords = 200;
constexpr std::uint8_t kA = 38;
constexpr int kPatienceMilliseconds = 10'000;

double microseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::micro>(Clock::now() - since).count();
}

/// The simplest application: a window that gets keys and answers pings, which fixes wait for.
class KeyWindow {
 public:
  explicit KeyWindow(XServer& server) : display_(XOpenDisplay(server.name().c_str())) {
    if (display_ == nullptr) throw std::runtime_error("cannot open the display");
    window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 100, 100, 0, 0, 0);
    ping_ = XInternAtom(display_, "_NET_WM_PING", False);
    XSetWMProtocols(display_, window_, &ping_, 1);
    XSelectInput(display_, window_, KeyPressMask | StructureNotifyMask);
    XMapWindow(display_, window_);
    XEvent event;
    do {
      XNextEvent(display_, &event);
    } while (event.type != MapNotify);
    server.focus(window_);
  }
  KeyWindow(const KeyWindow&) = delete;
  KeyWindow& operator=(const KeyWindow&) = delete;
  ~KeyWindow() { XCloseDisplay(display_); }

  /// The next key that reaches the window, waited for.
  unsigned waitForKey() {
    XEvent event;
    while (true) {
      while (XPending(display_) > 0) {
        XNextEvent(display_, &event);
        if (event.type == KeyPress) return event.xkey.keycode;
        if (event.type == ClientMessage) answer(event.xclient);
      }
      pollfd waiting{ConnectionNumber(display_), POLLIN, 0};
      if (::poll(&waiting, 1, kPatienceMilliseconds) <= 0) throw std::runtime_error("no key came");
    }
  }

 private:
  void answer(XClientMessageEvent message) {
    if (static_cast<Atom>(message.data.l[0]) != ping_) return;
    XEvent event{};
    event.xclient = message;
    event.xclient.window = DefaultRootWindow(display_);
    XSendEvent(display_, event.xclient.window, False,
               SubstructureNotifyMask | SubstructureRedirectMask, &event);
    XFlush(display_);
  }

  Display* display_;
  ::Window window_ = 0;
  Atom ping_ = 0;
};

std::vector<double> keyDelays(XServer& server, KeyWindow& window) {
  std::vector<double> delays;
  for (int i = 0; i < kKeys; ++i) {
    const auto start = Clock::now();
    server.key(kA, true);
    window.waitForKey();
    delays.push_back(microseconds(start));
    server.key(kA, false);
    server.sync();
  }
  return delays;
}

/// From Space to the last key of a word of ten letters that is retyped.
std::vector<double> fixDelays(XServer& server, KeyWindow& window) {
  // In the Russian layout these keys give a word of the list; ten Backspaces, ten letters, Space.
  constexpr std::string_view kWord = "fyukbqcrbq";
  constexpr int kRetyped = 21;
  std::vector<double> delays;
  for (int i = 0; i < kWords; ++i) {
    server.lockGroup(0);
    server.type(kWord);
    for (std::size_t letter = 0; letter < kWord.size(); ++letter)
      window.waitForKey();
    const auto start = Clock::now();
    server.type(" ");
    for (int key = 0; key < kRetyped; ++key)
      window.waitForKey();
    delays.push_back(microseconds(start));
  }
  return delays;
}

void print(const char* what, std::vector<double> delays) {
  std::sort(delays.begin(), delays.end());
  const auto at = [&](double share) {
    return delays[static_cast<std::size_t>(share * static_cast<double>(delays.size() - 1))];
  };
  std::printf("%-44s median %7.3f ms   99th percentile %7.3f ms   (%zu)\n", what, at(0.5) / 1000,
              at(0.99) / 1000, delays.size());
}

}  // namespace

int main() {
  try {
    XServer server("us,ru");
    KeyWindow window(server);
    print("a key without the program", keyDelays(server, window));
    {
      const Tessarok program(server);
      print("a key with the program", keyDelays(server, window));
      server.type("\n");
      window.waitForKey();
      print("a word of ten letters put right", fixDelays(server, window));
    }
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tessarok_x11_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
