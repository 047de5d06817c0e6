#pragma once

namespace tessarok::platform {

/// Time that only moves forward. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Seconds since the system started.
  [[nodiscard]] virtual double uptime() = 0;
};

}  // namespace tessarok::platform
