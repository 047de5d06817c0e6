#pragma once

#include <optional>
#include <string>
#include <sys/ioctl.h>
#include <termios.h>
#include <variant>
#include <vector>

#include "desktops/posix/FileDescriptor.h"
#include "desktops/terminal/PtyModes.h"

namespace tessarok::terminal {

/// A program in a pseudo-terminal. Its end hangs up on a program that still runs. Main thread.
class Pty final {
 public:
  /// Why a program did not start, and what a shell would end with for it.
  struct Failure {
    std::string reason;
    int exitStatus = 0;
  };

  /// Starts a program, found as a shell finds it, on a terminal with these settings. `command`
  /// is the program and its arguments. To be called before threads are started.
  [[nodiscard]] static std::variant<Pty, Failure> start(const std::vector<std::string>& command,
                                                        termios settings, const winsize& size);

  /// Makes this process the program, without a terminal of its own; returns only when it cannot.
  [[nodiscard]] static Failure become(const std::vector<std::string>& command);

  /// What the program writes is read here, and what is written here the program reads; without
  /// waiting.
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }
  /// Absent when the terminal is gone.
  [[nodiscard]] std::optional<PtyModes> modes() const;
  /// The process group that reads the keys; -1 when there is none.
  [[nodiscard]] pid_t foregroundGroup() const;
  void setSize(const winsize& size);
  /// The program's exit status as a shell gives it, 128 and the signal for one that was killed;
  /// absent while it runs.
  [[nodiscard]] std::optional<int> exitStatus();
  /// Whether it has ended by a signal, and so without cleaning up.
  [[nodiscard]] bool wasKilled() const { return wasKilled_; }

 private:
  Pty(posix::FileDescriptor descriptor, pid_t program)
      : descriptor_(std::move(descriptor)), program_(program) {}

  posix::FileDescriptor descriptor_;
  pid_t program_;
  std::optional<int> exitStatus_;
  bool wasKilled_ = false;
};

}  // namespace tessarok::terminal
