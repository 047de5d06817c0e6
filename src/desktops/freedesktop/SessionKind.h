#pragma once

#include "platform/Environment.h"

namespace tessarok::freedesktop {

/// What kind of session a process belongs to, as its environment tells. Main thread.

/// On Wayland the X server, if there is one, sees only the keys of its own programs.
[[nodiscard]] bool isWaylandSession(platform::Environment& environment);

/// Only where the environment says so: a nameless session is not one.
[[nodiscard]] bool isX11Session(platform::Environment& environment);

/// KDE Plasma, whose compositor is told in its settings which input method to start.
[[nodiscard]] bool isPlasmaSession(platform::Environment& environment);

/// GNOME and its kin, whose shell is its own input method and speaks with IBus.
[[nodiscard]] bool isGnomeSession(platform::Environment& environment);

}  // namespace tessarok::freedesktop
