#include "desktops/macos/MacClock.h"

#include <time.h>

namespace tessarok::macos {

double MacClock::uptime() {
  constexpr double kNanosecondsPerSecond = 1e9;
  // What Foundation calls the system's uptime, without a message and a pool for every key.
  return static_cast<double>(::clock_gettime_nsec_np(CLOCK_UPTIME_RAW)) / kNanosecondsPerSecond;
}

}  // namespace tessarok::macos
