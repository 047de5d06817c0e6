#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "platform/Application.h"

namespace tessarok::inputmethod {

/// The corrector as a part of an input method framework, which it must not end. Other copies are
/// known by the lock. Main thread.
class FrameworkApplication final : public platform::Application {
 public:
  void becomeAccessory() override {}
  platform::RunningApplication self() override {
    return {.processIdentifier = ::getpid(), .launchDate = std::nullopt};
  }
  std::vector<platform::RunningApplication> running(std::string_view) override { return {self()}; }
  void terminate() override {
    if (onTerminate) onTerminate();
  }

  /// The corrector asks to be ended.
  std::function<void()> onTerminate;
};

}  // namespace tessarok::inputmethod
