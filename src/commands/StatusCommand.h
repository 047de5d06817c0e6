#pragma once

#include "commands/Options.h"

namespace tessarok::commands {

/// What `tessarok status` understands.
struct StatusOptions {
  bool json = false;
};

/// `tessarok status`: prints what runs here, what does not work and why, what has been learned and
/// where the files are. Returns the exit status: 1 when nothing is corrected, neither the desktop
/// nor this terminal.
int runStatus(const Options& options, const StatusOptions& status);

}  // namespace tessarok::commands
