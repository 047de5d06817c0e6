#pragma once

#include <optional>
#include <string>

#include "commands/Options.h"
#include "commands/PersonsLists.h"

namespace tessarok::commands {

/// What `tessarok type` understands.
struct TypeOptions {
  /// The layout selected at the start is the Russian one; absent: that of the first letter.
  std::optional<bool> fromRussian;
  Lists lists = Lists::persons;
  /// Absent for standard input.
  std::optional<std::string> text;
};

/// `tessarok type`: types a text on the virtual desktop and prints the screen. Returns the exit
/// status.
int runType(const Options& options, const TypeOptions& type);

}  // namespace tessarok::commands
