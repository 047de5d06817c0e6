#pragma once

#include <filesystem>
#include <optional>

#include "commands/Options.h"

namespace tessarok::commands {

/// `tessarok check-data`: holds every data file to the program's own rules. With a directory all
/// files are taken from there. Returns the exit status: 0 when all are good, else 2.
int runCheckData(const Options& options, const std::optional<std::filesystem::path>& directory);

}  // namespace tessarok::commands
