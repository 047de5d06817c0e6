#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/SerialQueues.h"

namespace tessarok::platform {

/// Where there is no other thread, or a change of threads would take longer than all else: every
/// job is done at once. Main thread.
class NoQueues final : public SerialQueues {
 public:
  std::unique_ptr<SerialQueue> create(const std::string&) override {
    return std::make_unique<NoQueue>();
  }

 private:
  class NoQueue final : public SerialQueue {
   public:
    void async(std::function<void()> job) override { job(); }
    void drain() override {}
  };
};

}  // namespace tessarok::platform
