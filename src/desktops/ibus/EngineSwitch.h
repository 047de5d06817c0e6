#pragma once

#include <functional>
#include <ibus.h>
#include <string>

#include "desktops/freedesktop/Bus.h"

namespace tessarok::ibus {

/// Has another engine selected, by whoever decides that in this session: GNOME's shell through the
/// extension that comes with the corrector, or IBus itself where there is no such shell. Main
/// thread.
class EngineSwitch final {
 public:
  /// Both outlive this object; `session` is null without a session bus.
  EngineSwitch(freedesktop::Bus* session, IBusBus& bus) : session_(session), bus_(bus) {}
  EngineSwitch(const EngineSwitch&) = delete;
  EngineSwitch& operator=(const EngineSwitch&) = delete;

  /// Asks for it; that it is done shows when IBus enables the engine.
  void to(const std::string& engine);
  /// Nobody will do it.
  std::function<void()> onRefused;
  /// GNOME's shell runs without the extension.
  [[nodiscard]] bool lacksExtension() const { return lacksExtension_; }

 private:
  void answered(sd_bus_message& reply, const std::string& engine);
  void byIbus(const std::string& engine);

  freedesktop::Bus* session_;
  IBusBus& bus_;
  freedesktop::BusSlot call_;
  bool lacksExtension_ = false;
};

}  // namespace tessarok::ibus
