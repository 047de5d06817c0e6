#pragma once

#include <stdexcept>

namespace tessarok::commands {

/// Ends a command with one line on standard error and exit status 2.
class CommandError final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tessarok::commands
