#pragma once

namespace tessarok::platform {

/// A repeating timer; destroying it stops it.
class Timer {
 public:
  Timer() = default;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  virtual ~Timer() = default;
};

}  // namespace tessarok::platform
