#include "tests/desktops/macos/fake/FakeSystem.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <tuple>

namespace tessarok::fakemac {

FakeSystem& fakeSystem() {
  static auto* const system = new FakeSystem;
  static const auto mainThread = std::this_thread::get_id();
  if (std::this_thread::get_id() != mainThread) misuse("a call from another thread");
  return *system;
}

namespace {

/// What has come for the main queue since it was last turned.
struct Inbox {
  std::mutex mutex;
  std::vector<FakeSystem::Delayed> works;
};

Inbox& inbox() {
  static auto* const instance = new Inbox;
  return *instance;
}

void takeInbox(std::deque<FakeSystem::Delayed>& queue) {
  const std::lock_guard lock(inbox().mutex);
  queue.insert(queue.end(), inbox().works.begin(), inbox().works.end());
  inbox().works.clear();
}

}  // namespace

void postToMainQueue(const FakeSystem::Delayed& work) {
  const std::lock_guard lock(inbox().mutex);
  inbox().works.push_back(work);
}

void FakeSystem::runMainQueue() {
  for (takeInbox(mainQueue); !mainQueue.empty(); takeInbox(mainQueue)) {
    const auto next = mainQueue.front();
    mainQueue.pop_front();
    next.work(next.context);
  }
}

void FakeSystem::advance(double seconds) {
  const double end = uptime + seconds;
  while (runFirstDue(end))
    runMainQueue();
  uptime = end;
}

bool FakeSystem::runFirstDue(double end) {
  const auto timer = std::min_element(timers.begin(), timers.end(),
                                      [](auto* a, auto* b) { return a->due < b->due; });
  const auto call = std::min_element(delayed.begin(), delayed.end(),
                                     [](const auto& a, const auto& b) { return a.due < b.due; });
  const bool timerIsDue = timer != timers.end() && (*timer)->due <= end;
  const bool callIsDue = call != delayed.end() && call->due <= end;
  if (timerIsDue && (!callIsDue || (*timer)->due <= call->due)) {
    auto& due = **timer;
    uptime = std::max(uptime, due.due);
    due.due += due.interval;
    due.callback(refTo<CFRunLoopTimerRef>(&due), due.info);
    return true;
  }
  if (!callIsDue) return false;
  const auto due = *call;
  delayed.erase(call);
  uptime = std::max(uptime, due.due);
  due.work(due.context);
  return true;
}

void FakeSystem::announce(CFStringRef name) {
  const auto copy = observers;
  for (const auto& observer : copy) {
    if (!isSameString(observer.name, name)) continue;
    observer.callback(CFNotificationCenterGetDistributedCenter(),
                      const_cast<void*>(observer.observer), name, nullptr, nullptr);
  }
}

void FakeSystem::announce(const std::string& name) {
  String text(name);
  announce(refTo<CFStringRef>(&text));
}

void FakeSystem::raiseSignal(int signal) {
  for (const auto& [handle, source] : signalSources) {
    if (source.signal != signal || !source.isResumed) continue;
    mainQueue.push_back({0, source.context, source.handler});
  }
}

void FakeSystem::setPreference(const std::string& key, CFTypeRef value) {
  auto& saved = preferences[key];
  if (saved != nullptr) CFRelease(saved);
  saved = value;
}

}  // namespace tessarok::fakemac
