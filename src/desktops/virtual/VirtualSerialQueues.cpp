#include "desktops/virtual/VirtualSerialQueues.h"

#include <utility>

namespace tessarok::virtualdesktop {

class VirtualSerialQueues::Queue final : public platform::SerialQueue {
 public:
  explicit Queue(std::shared_ptr<posix::ThreadQueue> queue) : queue_(std::move(queue)) {}
  void async(std::function<void()> job) override { queue_->async(std::move(job)); }
  void drain() override { queue_->drain(); }

 private:
  std::shared_ptr<posix::ThreadQueue> queue_;
};

std::unique_ptr<platform::SerialQueue> VirtualSerialQueues::create(const std::string&) {
  auto queue = std::make_shared<posix::ThreadQueue>();
  queues_.push_back(queue);
  return std::make_unique<Queue>(std::move(queue));
}

void VirtualSerialQueues::drain() {
  for (const auto& weak : queues_) {
    if (const auto queue = weak.lock()) queue->drain();
  }
}

}  // namespace tessarok::virtualdesktop
