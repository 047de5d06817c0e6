#pragma once

#include <cstdint>
#include <optional>

namespace tessarok::platform {

/// A running process of an application.
struct RunningApplication {
  std::int64_t processIdentifier = 0;
  /// Seconds on a scale that all processes share; absent when the system does not know.
  std::optional<double> launchDate;
};

}  // namespace tessarok::platform
