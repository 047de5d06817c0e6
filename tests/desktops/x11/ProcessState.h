#pragma once

#include <sys/types.h>

namespace tessarok::testing {

/// The letter that the system has for what a process does: T is stopped, Z is ended.
[[nodiscard]] char stateOf(pid_t process);
/// How often a process has waited for something to happen, with all its threads.
[[nodiscard]] long waitsOf(pid_t process);
/// Seconds for which the main thread of a process has had a processor.
[[nodiscard]] double processorTimeOf(pid_t process);

}  // namespace tessarok::testing
