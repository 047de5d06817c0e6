#pragma once

#include "desktops/posix/ThreadQueue.h"
#include "platform/SerialQueues.h"

namespace tessarok::posix {

/// Queues with a thread each. The label is left out: a thread's name has no room for it.
class ThreadQueues final : public platform::SerialQueues {
 public:
  std::unique_ptr<platform::SerialQueue> create(const std::string&) override {
    return std::make_unique<ThreadQueue>();
  }
};

}  // namespace tessarok::posix
