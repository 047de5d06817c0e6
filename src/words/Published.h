#pragma once

#include <algorithm>
#include <atomic>
#include <iterator>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace tessarok {

/// A value that jobs of one queue make and the main thread reads. The main thread never waits for
/// it, and never pays for an old one's end: it may be ten million words.
template <typename Value>
class Published final {
 public:
  Published() = default;
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  /// Puts a value in the place of the one before. From the queue.
  void publish(Value value) {
    forgetOld();
    auto made = std::make_shared<const Value>(std::move(value));
    kept_.push_back(made);
    const std::lock_guard lock(mutex_);
    newest_ = std::move(made);
    isNew_.store(true, std::memory_order_release);
  }

  /// Ends the values that the main thread has left behind. From the queue, now and then.
  void forgetOld() {
    const auto old = takeOld();
    static_cast<void>(old);
  }

  /// The newest value; while one is being put in place, the one before. Stays until the next call.
  /// Main thread.
  [[nodiscard]] const Value& value() {
    if (isNew_.load(std::memory_order_acquire)) takeNewest();
    return read_ ? *read_ : none_;
  }

 private:
  using Values = std::vector<std::shared_ptr<const Value>>;

  [[nodiscard]] Values takeOld() {
    const std::lock_guard lock(mutex_);
    const auto old = std::partition(kept_.begin(), kept_.end(),
                                    [](const auto& value) { return value.use_count() > 1; });
    Values taken(std::make_move_iterator(old), std::make_move_iterator(kept_.end()));
    kept_.erase(old, kept_.end());
    return taken;
  }

  void takeNewest() {
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (!lock.owns_lock()) return;
    // Not the last owner of what it lets go: the queue keeps that.
    read_ = newest_;
    isNew_.store(false, std::memory_order_relaxed);
  }

  std::mutex mutex_;
  std::shared_ptr<const Value> newest_;
  std::atomic<bool> isNew_ = false;
  /// What the main thread reads.
  std::shared_ptr<const Value> read_;
  /// Every value that may still be read. The queue's.
  Values kept_;
  const Value none_{};
};

}  // namespace tessarok
