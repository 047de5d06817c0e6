#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <poll.h>
#include <thread>
#include <vector>

#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/MainQueue.h"
#include "desktops/posix/PollSource.h"
#include "platform/Clock.h"
#include "platform/RunLoop.h"

namespace tessarok::posix {

/// The main thread's loop of a program that waits as poll(2) does: for file descriptors, the main
/// queue, delayed calls and timers. Main thread, but for `async`.
class PollLoop final : public platform::RunLoop {
 public:
  /// `clock` outlives the loop.
  explicit PollLoop(platform::Clock& clock);

  void async(std::function<void()> work) override;
  void after(double seconds, std::function<void()> work) override;
  std::unique_ptr<platform::Timer> repeating(double interval, double tolerance,
                                             std::function<void()> work) override;
  /// Serves `PollSource`s; a source of another kind needs nothing from this loop.
  void add(platform::RunLoopSource& source) override;
  void remove(platform::RunLoopSource& source) override;

  /// Runs until `stop`.
  void run();
  void stop() { stopped_ = true; }
  [[nodiscard]] bool isStopped() const { return stopped_; }
  /// Runs everything queued on the main queue, first in first out, until nothing is left. For a
  /// source that serves several events in one turn, each of which is to find the queue empty.
  void runQueue();

  /// For whoever watches over the loop: called with true before the loop waits for something to
  /// happen, and with false whenever it goes on, also when it did not have to wait.
  std::function<void(bool waits)> onTurn;

 private:
  struct Pending {
    double due;
    std::uint64_t number;
    /// 0 for what runs once.
    double interval;
    std::function<void()> work;
  };
  class RepeatingTimer;

  std::uint64_t schedule(Pending pending);
  void cancel(std::uint64_t number);
  std::vector<Pending>::iterator nextDue();
  void runDue();
  [[nodiscard]] int millisecondsToWait();
  void serveDescriptors();
  void endWake() const;
  [[nodiscard]] bool isServed(const PollSource* source) const;

  platform::Clock& clock_;
  MainQueue queue_;
  std::thread::id mainThread_ = std::this_thread::get_id();
  /// A byte in it ends the waiting. Not open when none could be had: what other threads ask for is
  /// then done when the waiting ends anyway.
  FileDescriptor wakeReader_;
  FileDescriptor wakeWriter_;
  std::vector<Pending> pending_;
  std::uint64_t lastNumber_ = 0;
  std::vector<PollSource*> sources_;
  /// The sources of the turn in hand; a member only to keep its storage.
  std::vector<PollSource*> turn_;
  std::vector<pollfd> descriptors_;
  bool stopped_ = false;
};

}  // namespace tessarok::posix
