#pragma once

#include <cstdint>
#include <functional>
#include <glib.h>
#include <map>
#include <memory>

#include "desktops/inputmethod/Guard.h"
#include "desktops/posix/MainQueue.h"
#include "desktops/posix/PollSource.h"
#include "platform/RunLoop.h"

namespace tessarok::ibus {

/// GLib's main loop, which libibus uses, as the corrector's. Main thread, but for `async`.
class GlibRunLoop final : public platform::RunLoop {
 public:
  /// `guard` outlives this object.
  explicit GlibRunLoop(inputmethod::Guard& guard);
  GlibRunLoop(const GlibRunLoop&) = delete;
  GlibRunLoop& operator=(const GlibRunLoop&) = delete;
  ~GlibRunLoop() override;

  void async(std::function<void()> work) override;
  void after(double seconds, std::function<void()> work) override;
  std::unique_ptr<platform::Timer> repeating(double interval, double tolerance,
                                             std::function<void()> work) override;
  /// Serves `PollSource`s.
  void add(platform::RunLoopSource& source) override;
  void remove(platform::RunLoopSource& source) override;

  /// Runs everything queued on the main queue until nothing is left: a key is to find it empty.
  void runQueue();

 private:
  struct Turn;
  struct Delayed;
  struct Served;
  class RepeatingTimer;

  inputmethod::Guard& guard_;
  posix::MainQueue queue_;
  GSource* turn_;
  std::uint64_t lastNumber_ = 0;
  std::map<std::uint64_t, GSource*> delayed_;
  std::map<posix::PollSource*, GSource*> sources_;
};

}  // namespace tessarok::ibus
