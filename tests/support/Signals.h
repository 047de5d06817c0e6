#pragma once

#include <signal.h>
#include <sys/types.h>

namespace tessarok::testing {

/// Sends a signal to one process; nothing where there is none. A number below one stands for many
/// processes, -1 for every one of the machine, and a process that has ended is kept as -1 here.
inline void sendSignal(pid_t process, int signal) {
  if (process > 0) ::kill(process, signal);
}

}  // namespace tessarok::testing
