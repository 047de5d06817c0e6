#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace tessarok::posix {

/// What is to run on the main thread, first in first out. Any thread adds; the main thread takes.
class MainQueue final {
 public:
  MainQueue() = default;
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  void add(std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    works_.push_back(std::move(work));
  }
  /// Null when there is nothing to do.
  [[nodiscard]] std::function<void()> take() {
    const std::lock_guard lock(mutex_);
    if (works_.empty()) return nullptr;
    auto work = std::move(works_.front());
    works_.pop_front();
    return work;
  }
  [[nodiscard]] bool isEmpty() {
    const std::lock_guard lock(mutex_);
    return works_.empty();
  }

 private:
  std::mutex mutex_;
  std::deque<std::function<void()>> works_;
};

}  // namespace tessarok::posix
