#pragma once

#include <fstream>
#include <string>
#include <sys/types.h>

namespace tessarok::testing {

/// The memory of a process that is its own, kB; 0 when there is no such process.
[[nodiscard]] inline long privateMemoryOf(pid_t process) {
  constexpr std::string_view kName = "RssAnon:";
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(kName)) return std::stol(line.substr(kName.size()));
  }
  return 0;
}

}  // namespace tessarok::testing
