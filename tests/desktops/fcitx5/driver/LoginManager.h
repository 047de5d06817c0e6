#pragma once

#include <fcitx-utils/dbus/bus.h>
#include <fcitx-utils/dbus/objectvtable.h>
#include <fcitx-utils/event.h>
#include <memory>
#include <string>

namespace tessarok::testing {

/// Plays the login manager on a system bus of the test's own.
class LoginManager final : public fcitx::dbus::ObjectVTable<LoginManager> {
 public:
  /// Null when the process has been given no such bus. `loop` outlives it.
  [[nodiscard]] static std::unique_ptr<LoginManager> onSystemBus(fcitx::EventLoop& loop);

  /// Somebody has asked for their session.
  [[nodiscard]] bool isAsked() const { return isAsked_; }
  /// "sleep" and "wake" of the machine, "Lock" and "Unlock" of the session.
  void tell(const std::string& what);

 private:
  LoginManager(fcitx::EventLoop& loop, const std::string& address);
  fcitx::dbus::ObjectPath getSession(const std::string& identifier);

  FCITX_OBJECT_VTABLE_METHOD(getSession, "GetSession", "s", "o");

  fcitx::dbus::Bus bus_;
  bool isAsked_ = false;
};

}  // namespace tessarok::testing
