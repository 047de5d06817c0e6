#pragma once

#include <string>

namespace tessarok::commands {

/// `tessarok on`, `off`, `layout` and `status`: asks the corrected terminal that this runs in, also
/// at the other end of ssh, and prints what it says. Returns the exit status: 1 when no corrected
/// terminal answers.
int runTerminalControl(const std::string& request);

}  // namespace tessarok::commands
