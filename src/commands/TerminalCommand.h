#pragma once

#include <string>
#include <vector>

#include "commands/Options.h"

namespace tessarok::commands {

/// What `tessarok terminal` understands.
struct TerminalOptions {
  /// The program to run and its arguments; empty for the person's login shell.
  std::vector<std::string> command;
};

/// Standard input is a terminal.
[[nodiscard]] bool isTerminal();

/// `tessarok terminal`: corrects what is typed into a program in a pseudo-terminal. Returns that
/// program's exit status.
int runTerminal(const Options& options, const TerminalOptions& terminal);

}  // namespace tessarok::commands
