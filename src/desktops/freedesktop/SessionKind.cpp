#include "desktops/freedesktop/SessionKind.h"

#include <string>

namespace tessarok::freedesktop {

bool isWaylandSession(platform::Environment& environment) {
  // Each is missing from some sessions: one where a display manager knows of none, the other
  // where the compositor starts programs of the session before it has a name.
  return environment.variable("WAYLAND_DISPLAY").value_or("") != "" ||
         environment.variable("XDG_SESSION_TYPE").value_or("") == "wayland";
}

bool isPlasmaSession(platform::Environment& environment) {
  const auto desktops = environment.variable("XDG_CURRENT_DESKTOP").value_or("");
  return desktops.find("KDE") != std::string::npos;
}

}  // namespace tessarok::freedesktop
