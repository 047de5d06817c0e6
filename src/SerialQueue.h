#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace tessarok {

/// Runs jobs one after another, in the order in which they were submitted, on a thread of its
/// own, which starts with the first job. Any thread may submit.
class SerialQueue {
 public:
  /// `label` is for people who look at the process with a debugger.
  explicit SerialQueue(std::string label) : label_(std::move(label)) {}
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;
  /// Finishes every job submitted so far.
  ~SerialQueue();

  void async(std::function<void()> job);
  /// Waits until every job submitted so far has finished. Not from a job of this queue.
  void drain();
  [[nodiscard]] const std::string& label() const { return label_; }

 private:
  void serve();

  std::string label_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> jobs_;
  bool busy_ = false;
  bool ending_ = false;
  std::thread worker_;
};

}  // namespace tessarok
