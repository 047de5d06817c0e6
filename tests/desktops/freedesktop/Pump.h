#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "desktops/posix/PollSource.h"
#include "desktops/virtual/VirtualRunLoop.h"

namespace tessarok::testing {

/// The main loop of a test: the virtual desktop's queue and timers, whose time the test moves by
/// hand, and real descriptors.
class Pump final : public platform::RunLoop {
 public:
  explicit Pump(virtualdesktop::VirtualRunLoop& loop) : loop_(loop) {}

  void async(std::function<void()> work) override { loop_.async(std::move(work)); }
  void after(double seconds, std::function<void()> work) override {
    loop_.after(seconds, std::move(work));
  }
  std::unique_ptr<platform::Timer> repeating(double interval, double tolerance,
                                             std::function<void()> work) override {
    return loop_.repeating(interval, tolerance, std::move(work));
  }
  void add(platform::RunLoopSource& source) override;
  void remove(platform::RunLoopSource& source) override;

  /// Serves everything until `done` is true; false when that takes longer than a deadline that
  /// only a fault reaches.
  [[nodiscard]] bool until(const std::function<bool()>& done);
  /// One turn, which waits for at most so long.
  void serve(int milliseconds);

 private:
  virtualdesktop::VirtualRunLoop& loop_;
  std::vector<posix::PollSource*> sources_;
};

}  // namespace tessarok::testing
