#pragma once

#include <functional>

namespace tessarok::platform {

/// Runs jobs one after another, in the order in which they were submitted, on another thread than
/// the main one. Any thread may submit.
class SerialQueue {
 public:
  /// Finishes every job submitted so far.
  virtual ~SerialQueue() = default;
  virtual void async(std::function<void()> job) = 0;
  /// Waits until every job submitted so far has finished. Not from a job of this queue.
  virtual void drain() = 0;
};

}  // namespace tessarok::platform
