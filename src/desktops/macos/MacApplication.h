#pragma once

#include "platform/Application.h"

namespace tessarok::macos {

/// The shared application and the running applications.
class MacApplication final : public platform::Application {
 public:
  void becomeAccessory() override;
  platform::RunningApplication self() override;
  std::vector<platform::RunningApplication> running(std::string_view identifier) override;
  void terminate() override;
};

}  // namespace tessarok::macos
