#pragma once

#include <string>

namespace tessarok::terminal {

/// The shell of the person who runs the program: $SHELL, or else that of the user database.
[[nodiscard]] std::string loginShell();

}  // namespace tessarok::terminal
