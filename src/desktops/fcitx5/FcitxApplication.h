#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "platform/Application.h"

namespace tessarok::fcitx5 {

/// The corrector as a part of Fcitx, which it must not end. Other copies are known by the lock.
/// Main thread.
class FcitxApplication final : public platform::Application {
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

}  // namespace tessarok::fcitx5
