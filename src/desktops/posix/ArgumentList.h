#pragma once

#include <string>
#include <vector>

namespace tessarok::posix {

/// The words of a command as exec and posix_spawn want them, which change nothing in spite of the
/// type; the list ends with a null. Valid as long as `command` is. Any thread.
[[nodiscard]] inline std::vector<char*> argumentsOf(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const auto& word : command)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  return arguments;
}

}  // namespace tessarok::posix
