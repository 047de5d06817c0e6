#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/SerialQueue.h"

namespace tessarok::posix {

/// A serial queue with a thread of its own, which starts with the first job. While the system has
/// no thread to give, a job runs where it is submitted: its submitter waits, but nothing is lost.
class ThreadQueue final : public platform::SerialQueue {
 public:
  ThreadQueue() = default;
  ThreadQueue(const ThreadQueue&) = delete;
  ThreadQueue& operator=(const ThreadQueue&) = delete;
  ~ThreadQueue() override;

  void async(std::function<void()> job) override;
  void drain() override;

 private:
  [[nodiscard]] bool startWorker();
  void serve();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> jobs_;
  bool busy_ = false;
  bool ending_ = false;
  std::thread worker_;
};

}  // namespace tessarok::posix
