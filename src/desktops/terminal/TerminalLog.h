#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "desktops/posix/StandardErrorLog.h"
#include "platform/SystemLog.h"

namespace tessarok::terminal {

/// The system log of a program that shares its terminal with another one: standard error. While
/// the other program draws on the same terminal, messages wait until it has ended, because there
/// is no place on its screen for them; into a file or a pipe they go at once. Any thread.
class TerminalLog final : public platform::SystemLog {
 public:
  void write(std::string_view message) override;
  /// From now on the screen is another program's.
  void hold();
  /// Writes what has waited.
  void release();

 private:
  /// A fault that repeats all day must not fill the memory.
  static constexpr std::size_t kMostWaiting = 100;

  std::mutex mutex_;
  posix::StandardErrorLog log_;
  bool holds_ = false;
  std::vector<std::string> waiting_;
  std::size_t dropped_ = 0;
};

}  // namespace tessarok::terminal
