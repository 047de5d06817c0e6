#include "desktops/posix/ThreadQueue.h"

#ifdef __linux__
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif
#include <system_error>
#include <utility>

namespace tessarok::posix {

namespace {

/// Keys come first where processors are few: of what queues do nothing is in a hurry. Elsewhere
/// than on Linux this would be the whole process's priority.
void stepBack() {
#ifdef __linux__
  constexpr int kNice = 10;
  static_cast<void>(::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), kNice));
#endif
}

}  // namespace

ThreadQueue::~ThreadQueue() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  if (worker_.joinable()) worker_.join();
}

void ThreadQueue::async(std::function<void()> job) {
  {
    const std::lock_guard lock(mutex_);
    if (worker_.joinable() || startWorker()) {
      jobs_.push_back(std::move(job));
      job = nullptr;
    }
  }
  // Without a thread there is no queue either, so this job is the next one.
  if (job) return job();
  changed_.notify_all();
}

bool ThreadQueue::startWorker() {
  try {
    worker_ = std::thread([this] { serve(); });
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

void ThreadQueue::drain() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return jobs_.empty() && !busy_; });
}

void ThreadQueue::serve() {
  stepBack();
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return !jobs_.empty() || ending_; });
    if (jobs_.empty()) return;
    auto job = std::move(jobs_.front());
    jobs_.pop_front();
    busy_ = true;
    lock.unlock();
    job();
    // A job's captures may be large; they go before the queue counts as drained.
    job = nullptr;
    lock.lock();
    busy_ = false;
    changed_.notify_all();
  }
}

}  // namespace tessarok::posix
