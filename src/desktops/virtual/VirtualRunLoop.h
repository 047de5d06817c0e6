#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "desktops/posix/MainQueue.h"
#include "platform/Clock.h"
#include "platform/RunLoop.h"

namespace tessarok::virtualdesktop {

/// Time and everything that waits for it. The clock stands still but in `advance`.
class VirtualRunLoop final : public platform::RunLoop, public platform::Clock {
 public:
  static constexpr double kUptimeAtStart = 1000.0;

  double uptime() override { return now_; }
  void async(std::function<void()> work) override { queue_.add(std::move(work)); }
  void after(double seconds, std::function<void()> work) override;
  std::unique_ptr<platform::Timer> repeating(double interval, double tolerance,
                                             std::function<void()> work) override;
  void add(platform::RunLoopSource&) override {}
  void remove(platform::RunLoopSource&) override {}

  /// Runs everything queued on the main queue, first in first out, until nothing is left.
  void runQueue();
  /// Called whenever the main queue is about to be looked at: here all other threads take no time.
  std::function<void()> onTurn;
  /// Moves the clock on; what falls due runs in order, each at its own time.
  void advance(double seconds);

 private:
  struct Pending {
    double due;
    /// Of what is due at the same instant, timers run before delayed calls.
    bool isTimer;
    std::uint64_t number;
    double interval;
    std::function<void()> work;
  };
  class RepeatingTimer;

  std::vector<Pending>::iterator nextDue();
  void runFirst(std::vector<Pending>::iterator next);
  std::uint64_t add(Pending pending);
  void cancel(std::uint64_t number);

  double now_ = kUptimeAtStart;
  posix::MainQueue queue_;
  std::vector<Pending> pending_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace tessarok::virtualdesktop
