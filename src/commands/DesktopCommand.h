#pragma once

#include <optional>

#include "commands/Options.h"

namespace tessarok::commands {

/// Whether there is a display whose applications could be corrected.
[[nodiscard]] bool hasDisplay();

/// Corrects what is typed into every application of the display, until it is ended by a signal,
/// from its menu, or with the display. The exit status; absent when it could not start, after
/// saying why on standard error.
[[nodiscard]] std::optional<int> runDesktop(const Options& options);

}  // namespace tessarok::commands
