#pragma once

#include <functional>
#include <ibus.h>
#include <string>

#include "desktops/freedesktop/BusSlot.h"
#include "desktops/ibus/ShellExtension.h"

namespace tessarok::ibus {

/// Has another engine selected, by whoever decides that in this session: GNOME's shell through the
/// extension that comes with the corrector, or IBus itself where there is no such shell. Main
/// thread.
class EngineSwitch final {
 public:
  /// All outlive this object; `session` is null without a session bus.
  EngineSwitch(freedesktop::Bus* session, ShellExtension& extension, IBusBus& bus)
      : session_(session), extension_(extension), bus_(bus) {}
  EngineSwitch(const EngineSwitch&) = delete;
  EngineSwitch& operator=(const EngineSwitch&) = delete;

  /// Asks for it; that it is done shows when IBus enables the engine.
  void to(const std::string& engine);
  /// Nobody will do it.
  std::function<void()> onRefused;

 private:
  void byShell(const std::string& engine);
  void answered(sd_bus_message& reply, const std::string& engine);
  void byIbus(const std::string& engine);

  freedesktop::Bus* session_;
  ShellExtension& extension_;
  IBusBus& bus_;
  freedesktop::BusSlot call_;
};

}  // namespace tessarok::ibus
