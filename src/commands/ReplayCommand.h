#pragma once

#include <filesystem>
#include <optional>

#include "commands/Options.h"

namespace tessarok::commands {

/// What `tessarok replay` understands.
struct ReplayOptions {
  /// An existing directory used as the home directory; absent for a temporary one.
  std::optional<std::filesystem::path> home;
  /// Absent for standard input.
  std::optional<std::filesystem::path> file;
};

/// `tessarok replay`: runs a script on the virtual desktop. Returns the exit status.
int runReplay(const Options& options, const ReplayOptions& replay);

}  // namespace tessarok::commands
