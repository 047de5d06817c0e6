#pragma once

#include <cstdint>
#include <fcitx-utils/event.h>
#include <fcitx-utils/eventdispatcher.h>
#include <functional>
#include <map>
#include <memory>
#include <thread>
#include <vector>

#include "desktops/inputmethod/Guard.h"
#include "desktops/posix/MainQueue.h"
#include "desktops/posix/PollSource.h"
#include "platform/RunLoop.h"

namespace tessarok::fcitx5 {

/// Fcitx's own event loop as the corrector's. Main thread, but for `async`.
class FcitxRunLoop final : public platform::RunLoop {
 public:
  /// Both outlive this object.
  FcitxRunLoop(fcitx::EventLoop& loop, inputmethod::Guard& guard);
  FcitxRunLoop(const FcitxRunLoop&) = delete;
  FcitxRunLoop& operator=(const FcitxRunLoop&) = delete;
  ~FcitxRunLoop() override;

  void async(std::function<void()> work) override;
  void after(double seconds, std::function<void()> work) override;
  std::unique_ptr<platform::Timer> repeating(double interval, double tolerance,
                                             std::function<void()> work) override;
  /// Serves `PollSource`s. What a source waits for is asked when it is added and after each time
  /// that it was served.
  void add(platform::RunLoopSource& source) override;
  void remove(platform::RunLoopSource& source) override;

  /// Runs everything queued on the main queue until nothing is left: a key is to find it empty.
  void runQueue();

 private:
  class RepeatingTimer;

  void serve(posix::PollSource* source, fcitx::IOEventFlags flags);
  void throwAway(std::unique_ptr<fcitx::EventSource> source);

  fcitx::EventLoop& loop_;
  inputmethod::Guard& guard_;
  posix::MainQueue queue_;
  std::thread::id mainThread_ = std::this_thread::get_id();
  /// For what other threads ask for.
  fcitx::EventDispatcher dispatcher_;
  std::unique_ptr<fcitx::EventSource> turn_;
  std::uint64_t lastNumber_ = 0;
  std::map<std::uint64_t, std::unique_ptr<fcitx::EventSource>> delayed_;
  std::map<posix::PollSource*, std::unique_ptr<fcitx::EventSourceIO>> sources_;
  /// An event source may not be destroyed by its own callback.
  std::vector<std::unique_ptr<fcitx::EventSource>> done_;
};

}  // namespace tessarok::fcitx5
