#pragma once

#include "platform/Clock.h"

namespace tessarok::testing {

/// A clock that shows what the test says, whatever the run loop does.
class HandClock final : public platform::Clock {
 public:
  double uptime() override { return now; }
  double now = 1000;
};

}  // namespace tessarok::testing
