#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>

namespace tessarok::posix {

/// What the system tells of running processes. Any thread.

/// The program that a process runs, with its whole path; absent when it has ended or is somebody
/// else's.
[[nodiscard]] std::optional<std::filesystem::path> programFileOf(pid_t process);

/// The name of that program, at most 15 bytes of it, also of somebody else's process; empty where
/// the system does not tell.
[[nodiscard]] std::string programNameOf(pid_t process);

/// When a process was started, in seconds on a scale that all processes share; absent when it is
/// not known.
[[nodiscard]] std::optional<double> launchDateOf(pid_t process);

}  // namespace tessarok::posix
