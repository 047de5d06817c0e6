#pragma once

#include <filesystem>
#include <optional>

#include "commands/Options.h"

namespace tessarok::commands {

/// `tessarok report`: writes what a problem report needs into a new file, "tessarok-report.txt"
/// when none is named, or for "-" on standard output: versions, layouts, settings, and numbers of
/// words and of decisions. Never text that was typed, a word of a list or the name of a person's
/// folder. Returns the exit status.
int runReport(const Options& options, const std::optional<std::filesystem::path>& file);

}  // namespace tessarok::commands
