#pragma once

#include <signal.h>

/// By default a process ends when it writes to a pipe that nobody reads any more (SIGPIPE) or
/// beyond a limit on the size of files (SIGXFSZ). A corrector holds keys, and sometimes a
/// terminal; to it both are errors of the write, and nothing more.
namespace tessarok::posix {

/// For the whole process, and those that it forks. Before there are threads.
void ignoreWriteSignals();
/// In a process that is about to become another program, which expects them as whoever started this
/// one left them. Async-signal-safe.
void restoreWriteSignals();

/// The same for what the current thread writes while the object lives, in processes that belong to
/// another program.
class WriteSignalsBlocked {
 public:
  WriteSignalsBlocked();
  WriteSignalsBlocked(const WriteSignalsBlocked&) = delete;
  WriteSignalsBlocked& operator=(const WriteSignalsBlocked&) = delete;
  ~WriteSignalsBlocked();

 private:
  sigset_t former_;
  /// What was waiting before, and is not this object's to take.
  sigset_t pending_;
};

}  // namespace tessarok::posix
