#pragma once

#include "platform/RunLoop.h"

namespace tessarok::macos {

/// The main run loop and the main dispatch queue, which it serves.
class MacRunLoop final : public platform::RunLoop {
 public:
  void async(std::function<void()> work) override;
  void after(double seconds, std::function<void()> work) override;
  std::unique_ptr<platform::Timer> repeating(double interval, double tolerance,
                                             std::function<void()> work) override;
  void add(platform::RunLoopSource& source) override;
  void remove(platform::RunLoopSource& source) override;
};

}  // namespace tessarok::macos
