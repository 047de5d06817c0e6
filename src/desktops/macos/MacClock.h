#pragma once

#include "platform/Clock.h"

namespace tessarok::macos {

/// Time since the system started, sleep left out.
class MacClock final : public platform::Clock {
 public:
  double uptime() override;
};

}  // namespace tessarok::macos
