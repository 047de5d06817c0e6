#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace tessarok::testing {

/// Time on a machine that may have other work to do: what has passed, without that by which a
/// thread that does nothing but sleep was woken too late meanwhile. Whatever the program promises
/// to do in a certain time, the machine takes so much more of it.
class FairClock {
 public:
  FairClock() : watcher_([this] { watch(); }) {}
  FairClock(const FairClock&) = delete;
  FairClock& operator=(const FairClock&) = delete;
  ~FairClock() {
    ended_ = true;
    watcher_.join();
  }

  /// Seconds since the clock was made.
  [[nodiscard]] double passed() const {
    const Duration passed = Clock::now() - start_;
    return std::max(0.0, passed.count() - late_);
  }

 private:
  using Clock = std::chrono::steady_clock;
  using Duration = std::chrono::duration<double>;

  void watch() {
    constexpr Duration kNap{0.005};
    while (!ended_) {
      const auto before = Clock::now();
      std::this_thread::sleep_for(kNap);
      const Duration late = Clock::now() - before - kNap;
      late_ = late_ + late.count();
    }
  }

  Clock::time_point start_ = Clock::now();
  std::atomic<bool> ended_{false};
  /// Seconds; written by the watcher alone.
  std::atomic<double> late_{0};
  std::thread watcher_;
};

}  // namespace tessarok::testing
