#include "desktops/freedesktop/SessionKind.h"

#include <string>

namespace tessarok::freedesktop {

namespace {

bool isDesktop(platform::Environment& environment, const char* name) {
  const auto desktops = environment.variable("XDG_CURRENT_DESKTOP").value_or("");
  return desktops.find(name) != std::string::npos;
}

}  // namespace

bool isWaylandSession(platform::Environment& environment) {
  // Each is missing from some sessions: one where a display manager knows of none, the other
  // where the compositor starts programs of the session before it has a name.
  return environment.variable("WAYLAND_DISPLAY").value_or("") != "" ||
         environment.variable("XDG_SESSION_TYPE").value_or("") == "wayland";
}

bool isX11Session(platform::Environment& environment) {
  return environment.variable("XDG_SESSION_TYPE").value_or("") == "x11";
}

bool isPlasmaSession(platform::Environment& environment) {
  return isDesktop(environment, "KDE");
}

bool isGnomeSession(platform::Environment& environment) {
  return isDesktop(environment, "GNOME");
}

}  // namespace tessarok::freedesktop
