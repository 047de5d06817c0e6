#pragma once

#include "platform/Environment.h"

namespace tessarok::commands {

/// On Wayland an X server sees only the keys of its own programs. By the environment that the
/// session gives its programs, as below.
[[nodiscard]] bool isWaylandSession(platform::Environment& environment);

/// Whether in this session what is typed does not go through an X server alone, so that correcting
/// there would do nothing, or would keep from its work what corrects: a Wayland session, or one
/// whose programs take their text from Fcitx5, where the addon of this program is installed.
[[nodiscard]] bool isServedWithoutX11(platform::Environment& environment);

}  // namespace tessarok::commands
