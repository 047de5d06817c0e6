#pragma once

#include <optional>
#include <string>

#include "commands/Options.h"
#include "commands/PersonsLists.h"
#include "words/Language.h"

namespace tessarok::commands {

/// What `tessarok type` understands.
struct TypeOptions {
  /// Whose layout is selected at the start; absent: that of the first letter.
  std::optional<Language> from{};
  Lists lists = Lists::persons;
  /// Absent for standard input.
  std::optional<std::string> text{};
};

/// `tessarok type`: types a text on the virtual desktop and prints the screen. Returns the exit
/// status.
int runType(const Options& options, const TypeOptions& type);

}  // namespace tessarok::commands
