#pragma once

#include "platform/Application.h"
#include "platform/posix/PollLoop.h"

namespace tessarok::posix {

/// This process, where no system keeps a list of running applications: a second copy is known by
/// the lock that the first one holds.
class ProcessApplication final : public platform::Application {
 public:
  explicit ProcessApplication(PollLoop& loop) : loop_(loop) {}

  void becomeAccessory() override {}
  platform::RunningApplication self() override;
  std::vector<platform::RunningApplication> running(std::string_view) override { return {self()}; }
  void terminate() override { loop_.stop(); }

 private:
  PollLoop& loop_;
};

}  // namespace tessarok::posix
