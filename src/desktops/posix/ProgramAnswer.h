#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tessarok::posix {

/// Runs a program, which finds nothing to read and whose complaints nobody sees, and waits for it:
/// what it has printed. Absent when it cannot be started, fails, or has not ended after so many
/// milliseconds; it is ended then, since whoever asked has a person waiting.
[[nodiscard]] std::optional<std::string> answerOf(const std::vector<std::string>& command,
                                                  int milliseconds);

}  // namespace tessarok::posix
