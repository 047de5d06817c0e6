#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/SerialQueues.h"

namespace tessarok::plain {

/// Where there is no other thread, or a change of threads would take longer than all else: every
/// job is done at once. Main thread.
class NoQueues final : public platform::SerialQueues {
 public:
  std::unique_ptr<platform::SerialQueue> create(const std::string&) override {
    return std::make_unique<NoQueue>();
  }

 private:
  class NoQueue final : public platform::SerialQueue {
   public:
    void async(std::function<void()> job) override { job(); }
    void drain() override {}
  };
};

}  // namespace tessarok::plain
