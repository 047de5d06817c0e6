#pragma once

#include <chrono>
#include <cstddef>

namespace tessarok::measure {

/// A line on a terminal's standard error that says how far a long run is and how long it will
/// take. Says nothing where standard error is no terminal.
class Progress final {
 public:
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(std::size_t done, std::size_t all);

 private:
  using Clock = std::chrono::steady_clock;

  bool isTerminal_;
  bool isShown_ = false;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastShown_;
};

}  // namespace tessarok::measure
