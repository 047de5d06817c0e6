#pragma once

#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

#include "desktops/posix/CallbackSource.h"
#include "desktops/posix/FileDescriptor.h"
#include "platform/RunLoop.h"

namespace tessarok::freedesktop {

/// Starts other programs, which live on when this one ends, and sees them off when they end
/// first, so that none is left behind as a zombie. Main thread.
class Programs final {
 public:
  /// The exit status; 128 and the signal's number for a program that a signal ended.
  using Ended = std::function<void(int status)>;

  /// `loop` outlives the object.
  explicit Programs(platform::RunLoop& loop) : loop_(loop) {}
  Programs(const Programs&) = delete;
  Programs& operator=(const Programs&) = delete;
  ~Programs();

  /// Starts the program, searched for in $PATH, in a session of its own. `ended` is called when
  /// it ends. 0 when it was started, else the error number.
  [[nodiscard]] int start(const std::vector<std::string>& command, Ended ended);
  /// How many are still running.
  [[nodiscard]] std::size_t running() const { return running_.size(); }

 private:
  struct Running {
    pid_t process;
    posix::FileDescriptor handle;
    std::unique_ptr<posix::CallbackSource> source;
    Ended ended;
  };

  void watch(pid_t process, Ended ended);
  /// Does nothing while the program runs.
  void seeOff(pid_t process);
  /// Those whose end no descriptor tells, on systems that have none for processes.
  void seeOffUnwatched();

  platform::RunLoop& loop_;
  std::vector<std::unique_ptr<Running>> running_;
};

}  // namespace tessarok::freedesktop
