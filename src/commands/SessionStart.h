#pragma once

#include "platform/Environment.h"

namespace tessarok::commands {

/// Whether in this session what is typed does not go through an X server alone, so that correcting
/// there would do nothing, or would keep from its work what corrects: a Wayland session, or one
/// whose programs take their text from Fcitx5, where the addon of this program is installed.
[[nodiscard]] bool isServedWithoutX11(platform::Environment& environment);

}  // namespace tessarok::commands
