// Dispatch: the main queue, which the tests turn by hand, serial queues with threads, and signals.

#include <dispatch/dispatch.h>
#include <map>
#include <memory>
#include <mutex>

#include "desktops/posix/ThreadQueue.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

// The names are the system's.
dispatch_queue_s _dispatch_main_q;
struct dispatch_source_type_s {};
const dispatch_source_type_s _dispatch_source_type_signal;

namespace tessarok::fakemac {

namespace {

constexpr double kNanosecondsPerSecond = 1e9;

struct Queue {
  dispatch_queue_s handle;
  posix::ThreadQueue jobs;
};

// Queues submit to each other from their threads.
std::mutex mutex;

std::map<dispatch_object_t, std::unique_ptr<Queue>>& queues() {
  static auto* const all = new std::map<dispatch_object_t, std::unique_ptr<Queue>>;
  return *all;
}

posix::ThreadQueue& jobsOf(dispatch_queue_t queue) {
  const std::lock_guard lock(mutex);
  const auto found = queues().find(queue);
  if (found == queues().end()) misuse("a queue that does not exist was used");
  return found->second->jobs;
}

void requireMain(dispatch_queue_t queue) {
  if (queue != &_dispatch_main_q) misuse("a queue other than the main one");
}

}  // namespace

}  // namespace tessarok::fakemac

using namespace tessarok::fakemac;

dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
  if (label == nullptr || attributes != DISPATCH_QUEUE_SERIAL) {
    misuse("dispatch_queue_create was called with unexpected arguments");
  }
  fakeSystem().queueLabels.emplace_back(label);
  auto queue = std::make_unique<Queue>();
  dispatch_queue_t handle = &queue->handle;
  const std::lock_guard lock(mutex);
  queues().emplace(handle, std::move(queue));
  return handle;
}

void dispatch_release(dispatch_object_t object) {
  if (const auto source = fakeSystem().signalSources.find(object);
      source != fakeSystem().signalSources.end()) {
    // The system ends a process that lets a suspended source go.
    if (!source->second.isResumed) misuse("a source that was not resumed was released");
    fakeSystem().signalSources.erase(source);
    delete static_cast<dispatch_source_s*>(object);
    return;
  }
  std::unique_ptr<Queue> released;
  {
    const std::lock_guard lock(mutex);
    const auto found = queues().find(object);
    if (found == queues().end()) misuse("a queue that does not exist was released");
    released = std::move(found->second);
    queues().erase(found);
  }
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  if (queue == &_dispatch_main_q) {
    postToMainQueue({0, context, work});
    return;
  }
  jobsOf(queue).async([=] { work(context); });
}

void dispatch_sync_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  // The system would wait for ever.
  if (queue == &_dispatch_main_q) misuse("the main thread waits for itself");
  auto& jobs = jobsOf(queue);
  jobs.async([=] { work(context); });
  jobs.drain();
}

dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds) {
  if (when != DISPATCH_TIME_NOW) misuse("a time other than from now on");
  return static_cast<dispatch_time_t>(fakeSystem().uptime * kNanosecondsPerSecond) +
         static_cast<dispatch_time_t>(nanoseconds);
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t queue, void* context,
                      dispatch_function_t work) {
  requireMain(queue);
  fakeSystem().delayed.push_back(
      {static_cast<double>(when) / kNanosecondsPerSecond, context, work});
}

namespace {

FakeSystem::SignalSource& sourceOf(dispatch_object_t object) {
  const auto found = fakeSystem().signalSources.find(object);
  if (found == fakeSystem().signalSources.end()) misuse("a source that does not exist was used");
  return found->second;
}

}  // namespace

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, uintptr_t handle,
                                         uintptr_t mask, dispatch_queue_t queue) {
  requireMain(queue);
  if (type != DISPATCH_SOURCE_TYPE_SIGNAL || mask != 0) misuse("a source of something else");
  if (fakeSystem().failsSignalSources) return nullptr;
  auto* const source = new dispatch_source_s;
  fakeSystem().signalSources[source] = {static_cast<int>(handle), nullptr, nullptr, false};
  return source;
}

void dispatch_set_context(dispatch_object_t object, void* context) {
  sourceOf(object).context = context;
}

void dispatch_source_set_event_handler_f(dispatch_source_t source, dispatch_function_t handler) {
  sourceOf(source).handler = handler;
}

void dispatch_resume(dispatch_object_t object) {
  auto& source = sourceOf(object);
  if (source.isResumed || source.handler == nullptr) misuse("a source was resumed wrongly");
  source.isResumed = true;
}

void dispatch_source_cancel(dispatch_source_t source) {
  sourceOf(source).handler = nullptr;
}
