#pragma once

#include <functional>
#include <memory>

#include "platform/RunLoopSource.h"
#include "platform/Timer.h"

namespace tessarok::platform {

/// The main thread's loop. All calls but `async` come from the main thread.
class RunLoop {
 public:
  virtual ~RunLoop() = default;
  /// Runs `work` on the main thread, on a later turn of the loop. From any thread.
  virtual void async(std::function<void()> work) = 0;
  /// Runs `work` once, `seconds` of uptime from now.
  virtual void after(double seconds, std::function<void()> work) = 0;
  /// Runs `work` every `interval` seconds, also while a menu is open, each time at most
  /// `tolerance` seconds late. Stops when the timer is destroyed.
  [[nodiscard]] virtual std::unique_ptr<Timer> repeating(double interval, double tolerance,
                                                         std::function<void()> work) = 0;
  virtual void add(RunLoopSource& source) = 0;
  virtual void remove(RunLoopSource& source) = 0;
};

}  // namespace tessarok::platform
