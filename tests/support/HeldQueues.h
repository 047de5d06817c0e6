#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/SerialQueues.h"

namespace tessarok::testing {

/// Queues whose other thread gets nowhere, as on a disk that does not answer, until the test lets
/// it go on. Nothing waits for them.
class HeldQueues final : public platform::SerialQueues {
 public:
  std::unique_ptr<platform::SerialQueue> create(const std::string&) override {
    return std::make_unique<Queue>(*this);
  }
  /// Does everything that was submitted.
  void letGo() {
    while (!jobs_.empty()) {
      const auto job = std::move(jobs_.front());
      jobs_.pop_front();
      job();
    }
  }
  [[nodiscard]] std::size_t jobs() const { return jobs_.size(); }

 private:
  class Queue final : public platform::SerialQueue {
   public:
    explicit Queue(HeldQueues& all) : all_(all) {}
    void async(std::function<void()> job) override { all_.jobs_.push_back(std::move(job)); }
    void drain() override {}

   private:
    HeldQueues& all_;
  };

  std::deque<std::function<void()>> jobs_;
};

}  // namespace tessarok::testing
