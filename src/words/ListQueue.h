#pragma once

#include <functional>

namespace tessarok {

/// Where the lists that people and the program's makers have written are read: a file may be large
/// and its disk slow, and meanwhile keys go on. Main thread.
class ListQueue {
 public:
  ListQueue() = delete;

  /// Jobs run one after another. What a job wanted does not happen when there is no memory for it.
  static void async(std::function<void()> job);
  /// Waits until every job submitted so far has finished. Not from the queue.
  static void drain();
};

}  // namespace tessarok
