#pragma once

#include <functional>
#include <memory>
#include <sys/types.h>

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PollLoop.h"

namespace tessarok::x11 {

/// A small process beside this one that frees the keyboards when this one no longer can: stopped,
/// hung or killed, it would leave a person without a keyboard. Main thread.
///
/// Behaviour. While the keyboards are held, the program writes a byte into a pipe several times a
/// second. When none comes for a while, the watchdog kills the program, and with its connection
/// the server lets the keyboards go. Whenever the program ends, in whatever way, the watchdog
/// releases the synthetic keys that are still down, and ends.
class Watchdog final {
 public:
  /// To be called before the process has threads or a connection to the X server. Throws
  /// `std::system_error` when no process can be made.
  Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog();

  /// Keyboards are held from now on; false when the watchdog is not there any more. `lost` is
  /// called when it ends before it should.
  [[nodiscard]] bool start(posix::PollLoop& runLoop, std::function<void()> lost);
  /// The keyboards are free.
  void stop();
  /// The other process, for those who want to see it fail.
  [[nodiscard]] pid_t process() const { return process_; }

 private:
  [[nodiscard]] bool send(char message);
  void beat();

  posix::FileDescriptor pipe_;
  pid_t process_ = -1;
  std::unique_ptr<platform::Timer> timer_;
  std::function<void()> lost_;
};

}  // namespace tessarok::x11
