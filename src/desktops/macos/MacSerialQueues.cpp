#include "desktops/macos/MacSerialQueues.h"

#include <dispatch/dispatch.h>
#include <utility>

#include "desktops/macos/DispatchWork.h"

namespace tessarok::macos {

namespace {

class MacSerialQueue final : public platform::SerialQueue {
 public:
  explicit MacSerialQueue(const std::string& label)
      : queue_(dispatch_queue_create(label.c_str(), DISPATCH_QUEUE_SERIAL)) {}
  MacSerialQueue(const MacSerialQueue&) = delete;
  MacSerialQueue& operator=(const MacSerialQueue&) = delete;
  ~MacSerialQueue() override {
    drain();
    dispatch_release(queue_);
  }

  void async(std::function<void()> job) override {
    dispatch_async_f(queue_, DispatchWork::context(std::move(job)), &DispatchWork::call);
  }
  void drain() override {
    // An empty job: when its turn comes, all earlier ones are done.
    dispatch_sync_f(queue_, nullptr, [](void*) {});
  }

 private:
  dispatch_queue_t queue_;
};

}  // namespace

std::unique_ptr<platform::SerialQueue> MacSerialQueues::create(const std::string& label) {
  return std::make_unique<MacSerialQueue>(label);
}

}  // namespace tessarok::macos
