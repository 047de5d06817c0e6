#pragma once

#include <string>
#include <vector>

namespace tessarok::makedata {

struct ProgramResult {
  std::string output;
  /// Exit status; 128 + the signal's number for a program that was killed.
  int status = 0;
};

/// Runs a program found on PATH with `input` as its standard input and waits for it. What it writes
/// to standard error is dropped: the caller reports the failure in its own words. Throws
/// std::system_error when the program cannot be started.
[[nodiscard]] ProgramResult runProgram(const std::vector<std::string>& command,
                                       const std::string& input);

}  // namespace tessarok::makedata
