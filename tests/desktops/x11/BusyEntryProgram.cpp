// A window that a text is typed into, of a program that is slow to erase: for a while after a
// Backspace it is busy, and throws away the keys that it finds waiting then, as word processors
// do. The text is in the file that the first argument names. With "silent" behind it, the window
// says that it answers pings and does not, but loses no key.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <xkbcommon/xkbcommon.h>

namespace {

/// Longer than the answer to a ping takes.
constexpr std::chrono::milliseconds kBusyTime{3};

class Entry {
 public:
  Entry(std::string file, bool isSilent)
      : file_(std::move(file)), isSilent_(isSilent), display_(XOpenDisplay(nullptr)) {
    window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 100, 20, 0, 0, 0);
    ping_ = XInternAtom(display_, "_NET_WM_PING", False);
    XSetWMProtocols(display_, window_, &ping_, 1);
    XSelectInput(display_, window_, KeyPressMask);
    XMapWindow(display_, window_);
    save();
  }

  [[noreturn]] void run() {
    for (;;) {
      XEvent event;
      XNextEvent(display_, &event);
      if (event.type == KeyPress) keyPressed(event.xkey);
      if (event.type == ClientMessage && !isSilent_) answer(event.xclient);
    }
  }

 private:
  void keyPressed(XKeyEvent& event) {
    KeySym symbol = NoSymbol;
    XLookupString(&event, nullptr, 0, &symbol, nullptr);
    if (symbol == XK_BackSpace) {
      erase();
    } else {
      char text[8] = {};
      if (xkb_keysym_to_utf8(static_cast<xkb_keysym_t>(symbol), text, sizeof text) > 0)
        text_ += text;
    }
    save();
  }

  void erase() {
    while (!text_.empty() && (text_.back() & 0xC0) == 0x80)
      text_.pop_back();
    if (!text_.empty()) text_.pop_back();
    if (isSilent_) return;
    std::this_thread::sleep_for(kBusyTime);
    XEvent lost;
    while (XCheckWindowEvent(display_, window_, KeyPressMask, &lost) != 0) {
    }
  }

  void answer(XClientMessageEvent message) {
    if (static_cast<Atom>(message.data.l[0]) != ping_) return;
    const auto root = DefaultRootWindow(display_);
    XEvent event{};
    event.xclient = message;
    event.xclient.window = root;
    XSendEvent(display_, root, False, SubstructureNotifyMask | SubstructureRedirectMask, &event);
  }

  void save() const {
    const auto temporary = file_ + ".new";
    auto* out = std::fopen(temporary.c_str(), "wb");
    if (out == nullptr) return;
    std::fwrite(text_.data(), 1, text_.size(), out);
    std::fclose(out);
    std::rename(temporary.c_str(), file_.c_str());
  }

  std::string file_;
  bool isSilent_;
  Display* display_;
  Window window_;
  Atom ping_;
  std::string text_;
};

}  // namespace

int main(int argc, char** argv) {
  const bool isSilent = argc == 3 && std::string(argv[2]) == "silent";
  if (argc != 2 && !isSilent) return 2;
  Entry(argv[1], isSilent).run();
}
