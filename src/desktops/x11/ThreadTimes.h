#pragma once

#include <optional>
#include <sys/types.h>

namespace tessarok::x11 {

/// What the system has counted of a thread since it began.
struct ThreadTimes {
  /// Nanoseconds for which it has had a processor; less where it is checked while it runs.
  long long ran = 0;
  /// Nanoseconds for which it could have run and others had the processors.
  long long queued = 0;
  /// It waits for something that is not the disk.
  bool isAsleep = false;

  /// Of a process's main thread; absent where the system does not count or does not tell. Any
  /// thread.
  [[nodiscard]] static std::optional<ThreadTimes> ofMainThread(pid_t process);
};

}  // namespace tessarok::x11
