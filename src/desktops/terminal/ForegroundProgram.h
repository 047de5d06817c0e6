#pragma once

#include <string>
#include <sys/types.h>

namespace tessarok::terminal {

/// The name of the program that leads a process group, at most 15 bytes of it; empty where the
/// system does not tell.
[[nodiscard]] std::string programOf(pid_t group);

/// Whether a program is a shell, which reads command lines.
[[nodiscard]] bool isShell(const std::string& program);

/// Whether a program may have a shell at its other end or inside of it: ssh, say.
[[nodiscard]] bool mayHoldShell(const std::string& program);

}  // namespace tessarok::terminal
