#pragma once

#include <sys/ioctl.h>
#include <termios.h>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::terminal {

/// The terminal that the program was started in. Raw while keys pass through the program; whatever
/// happens, its settings are put back. One in a process. Main thread.
class OuterTerminal final {
 public:
  /// Throws `std::system_error` when standard input is no terminal, and `std::runtime_error` when
  /// standard output is closed.
  OuterTerminal();
  OuterTerminal(const OuterTerminal&) = delete;
  OuterTerminal& operator=(const OuterTerminal&) = delete;
  ~OuterTerminal();

  [[nodiscard]] static bool isStandardInput();
  /// As they were found.
  [[nodiscard]] const termios& settings() const { return settings_; }
  [[nodiscard]] winsize size() const;
  /// Every key comes as it is pressed, and bytes go out as they are written. Also after the
  /// program was stopped and continued, when a shell may have changed the settings.
  void makeRaw();
  void restore();

  /// Where keys are read.
  [[nodiscard]] static int input();
  /// Where the screen is written; if that is a terminal, without waiting.
  [[nodiscard]] int output() const;
  [[nodiscard]] bool isOutputNonBlocking() const { return output_.isOpen(); }

 private:
  termios settings_{};
  bool isRaw_ = false;
  posix::FileDescriptor output_;
};

}  // namespace tessarok::terminal
