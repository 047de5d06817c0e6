#pragma once

#include "platform/Clock.h"

namespace tessarok::posix {

/// Seconds since the system started, not counting its sleep.
class MonotonicClock final : public platform::Clock {
 public:
  double uptime() override;
};

}  // namespace tessarok::posix
