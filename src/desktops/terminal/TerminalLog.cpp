#include "desktops/terminal/TerminalLog.h"

#include <unistd.h>

#include "desktops/posix/Translation.h"

namespace tessarok::terminal {

void TerminalLog::write(std::string_view message) {
  const std::lock_guard lock(mutex_);
  if (!holds_) return log_.write(message);
  if (waiting_.size() < kMostWaiting) {
    waiting_.emplace_back(message);
  } else {
    ++dropped_;
  }
}

void TerminalLog::hold() {
  const std::lock_guard lock(mutex_);
  holds_ = ::isatty(STDERR_FILENO) == 1;
}

void TerminalLog::release() {
  const std::lock_guard lock(mutex_);
  holds_ = false;
  for (const auto& message : waiting_)
    log_.write(message);
  waiting_.clear();
  if (dropped_ > 0) {
    log_.write("Tessarok: " +
               posix::translated("messages that are not shown: {1}", {std::to_string(dropped_)}));
  }
  dropped_ = 0;
}

}  // namespace tessarok::terminal
