#pragma once

#include <map>
#include <memory>
#include <string>

#include "tests/desktops/fcitx5/Session.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {

/// An X server without a window manager. GTK programs speak to Fcitx over the message bus.
class X11Session final : public Session {
 public:
  /// With more variables for every program.
  explicit X11Session(const std::map<std::string, std::string>& variables = {});
  ~X11Session() override;

  [[nodiscard]] Hands& hands() override;
  void openEntry(Entry entry) override;

 private:
  class Keyboard;

  XServer server_{"us"};
  PrivateBus bus_;
  std::unique_ptr<Keyboard> keyboard_;
};

}  // namespace tessarok::testing
