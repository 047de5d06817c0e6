#include "desktops/posix/MonotonicClock.h"

#include <chrono>

namespace tessarok::posix {

double MonotonicClock::uptime() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

}  // namespace tessarok::posix
