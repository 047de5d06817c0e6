#pragma once

#include <string>

#include "desktops/virtual/VirtualEvent.h"

namespace tessarok::virtualdesktop {

/// An event as replays print it: "down 51", "click left", or for events of the program "up п" and
/// "down 36 posted".
[[nodiscard]] std::string describe(const VirtualEvent& event);

}  // namespace tessarok::virtualdesktop
