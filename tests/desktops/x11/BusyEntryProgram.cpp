// A window that a text is typed into, of a program that is slow to erase: for a while after a
// Backspace it is busy, and throws away the keys that it finds waiting then, as word processors
// do. The text is in the file that the first argument names.
//
// With "silent" behind it, the window says that it answers pings and does not, but loses no key.
// With "frames" it looks at its keys once a frame, as games do, and takes a key that went down
// within two milliseconds after it went up for the repetition of a held one, which it drops.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <xkbcommon/xkbcommon.h>

namespace {

/// Longer than the answer to a ping takes.
constexpr std::chrono::milliseconds kBusyTime{3};
/// At sixty frames a second.
constexpr std::chrono::milliseconds kFrame{16};
/// Milliseconds between a key's way up and down that no finger makes.
constexpr Time kRepetition = 2;

enum class Kind { busy, silent, frames };

std::optional<Kind> kindNamed(std::string_view name) {
  if (name == "silent") return Kind::silent;
  if (name == "frames") return Kind::frames;
  return std::nullopt;
}

/// Whether an event goes with a release to make the repetition of a key.
Bool repeats(Display*, XEvent* event, XPointer data) {
  const auto& release = *reinterpret_cast<const XKeyEvent*>(data);
  const auto& press = event->xkey;
  return event->type == KeyPress && press.keycode == release.keycode &&
                 press.time - release.time < kRepetition
             ? True
             : False;
}

class Entry {
 public:
  Entry(std::string file, Kind kind)
      : file_(std::move(file)), kind_(kind), display_(XOpenDisplay(nullptr)) {
    window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 100, 20, 0, 0, 0);
    ping_ = XInternAtom(display_, "_NET_WM_PING", False);
    XSetWMProtocols(display_, window_, &ping_, 1);
    XSelectInput(display_, window_, KeyPressMask | KeyReleaseMask);
    XMapWindow(display_, window_);
    save();
  }

  [[noreturn]] void run() {
    for (;;) {
      if (kind_ == Kind::frames && XPending(display_) == 0) std::this_thread::sleep_for(kFrame);
      XEvent event;
      XNextEvent(display_, &event);
      if (event.type == KeyPress) keyPressed(event.xkey);
      if (event.type == KeyRelease && kind_ == Kind::frames) dropRepetition(event.xkey);
      if (event.type == ClientMessage && kind_ != Kind::silent) answer(event.xclient);
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

  void dropRepetition(XKeyEvent& release) {
    XEvent lost;
    XCheckIfEvent(display_, &lost, repeats, reinterpret_cast<XPointer>(&release));
  }

  void erase() {
    while (!text_.empty() && (text_.back() & 0xC0) == 0x80)
      text_.pop_back();
    if (!text_.empty()) text_.pop_back();
    if (kind_ != Kind::busy) return;
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
  Kind kind_;
  Display* display_;
  Window window_;
  Atom ping_;
  std::string text_;
};

}  // namespace

int main(int argc, char** argv) {
  const auto kind = argc == 3 ? kindNamed(argv[2]) : Kind::busy;
  if (argc < 2 || argc > 3 || !kind) return 2;
  Entry(argv[1], *kind).run();
}
