#pragma once

#include <string>

#include "commands/DesktopControl.h"

namespace tessarok::commands {

/// How the correction of a desktop stands, in the person's language: also that it is off while it
/// waits.
[[nodiscard]] std::string correctionOf(const DesktopStatus& status);

/// `tessarok on`, `off`, `pause` and `layout`: asks the corrected terminal that this runs in, or
/// else the corrector of the desktop, and prints how it stands then. Returns the exit status: 1
/// when nobody answers.
int runControl(const std::string& request);

/// `tessarok quit`: ends the corrector of the desktop. Returns the exit status: 1 when none runs.
int runQuit();

}  // namespace tessarok::commands
