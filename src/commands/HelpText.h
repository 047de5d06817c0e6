#pragma once

#include <string>

namespace tessarok::commands {

/// What `tessarok --help` says behind the commands: keys, files and environment variables.
[[nodiscard]] std::string helpText();

}  // namespace tessarok::commands
