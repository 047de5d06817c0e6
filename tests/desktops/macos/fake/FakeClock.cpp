// The system's clock.

#include <cmath>
#include <time.h>

#include "tests/desktops/macos/fake/FakeSystem.h"

uint64_t clock_gettime_nsec_np(clockid_t clock) {
  using namespace tessarok::fakemac;
  if (clock != CLOCK_UPTIME_RAW) misuse("a clock that goes on while the computer sleeps");
  constexpr double kNanosecondsPerSecond = 1e9;
  return static_cast<uint64_t>(std::llround(fakeSystem().uptime * kNanosecondsPerSecond));
}
