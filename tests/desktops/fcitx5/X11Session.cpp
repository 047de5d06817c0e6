#include "tests/desktops/fcitx5/X11Session.h"

#include <stdexcept>

#include "tests/desktops/x11/Patience.h"

namespace tessarok::testing {

class X11Session::Keyboard final : public Hands {
 public:
  explicit Keyboard(XServer& server) : server_(server) {}

 protected:
  void key(unsigned xKey, bool isDown) override {
    server_.key(static_cast<std::uint8_t>(xKey), isDown);
  }
  void flush() override {}

 private:
  XServer& server_;
};

X11Session::X11Session(const std::map<std::string, std::string>& variables)
    : keyboard_(std::make_unique<Keyboard>(server_)) {
  environment_ = {{"DISPLAY", server_.name()},     {"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                  {"GDK_BACKEND", "x11"},          {"GTK_IM_MODULE", "fcitx"},
                  {"QT_QPA_PLATFORM", "xcb"},      {"QT_IM_MODULE", "fcitx"},
                  {"GSETTINGS_BACKEND", "memory"}, {"NO_AT_BRIDGE", "1"}};
  environment_.insert(variables.begin(), variables.end());
  addons_ = "dbus,dbusfrontend,xcb";
  startFcitx();
}

X11Session::~X11Session() = default;

Hands& X11Session::hands() {
  return *keyboard_;
}

void X11Session::openEntry(Entry entry) {
  closeEntry();
  if (!waitUntil([&] { return server_.windows().empty(); })) {
    throw std::runtime_error("a window stays open");
  }
  Session::openEntry(entry);
  if (!waitUntil([&] { return !server_.windows().empty(); })) {
    throw std::runtime_error("no window appears:\n" + messages());
  }
  server_.focus(server_.windows().front());
}

}  // namespace tessarok::testing
