#pragma once

#include "platform/Desktop.h"

namespace tessarok {

/// Seconds since the system started: the time that everything about keys is counted in.
[[nodiscard]] inline double uptime() {
  return platform::desktop().clock().uptime();
}

}  // namespace tessarok
