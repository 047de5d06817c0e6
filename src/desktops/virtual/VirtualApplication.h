#pragma once

#include <string_view>
#include <vector>

#include "platform/Application.h"

namespace tessarok::virtualdesktop {

/// No other instance runs; asking to terminate is only noted. Main thread.
class VirtualApplication final : public platform::Application {
 public:
  void becomeAccessory() override {}
  platform::RunningApplication self() override { return {.processIdentifier = 1, .launchDate = 0}; }
  std::vector<platform::RunningApplication> running(std::string_view) override { return {self()}; }
  void terminate() override { terminationRequested = true; }
  bool terminationRequested = false;
};

}  // namespace tessarok::virtualdesktop
