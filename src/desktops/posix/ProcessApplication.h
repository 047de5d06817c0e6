#pragma once

#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "desktops/posix/PollLoop.h"
#include "platform/Application.h"

namespace tessarok::posix {

/// This process, where no system keeps a list of running applications: another copy is known by
/// the lock that it holds on a file. Main thread.
class ProcessApplication final : public platform::Application {
 public:
  /// `lockFile` is absent for programs of which any number may run.
  explicit ProcessApplication(PollLoop& loop,
                              std::optional<std::filesystem::path> lockFile = std::nullopt)
      : loop_(loop), lockFile_(std::move(lockFile)) {}

  void becomeAccessory() override {}
  platform::RunningApplication self() override;
  /// This process and, if it runs this program, the one that holds the lock. Before this process
  /// takes the lock itself.
  std::vector<platform::RunningApplication> running(std::string_view identifier) override;
  void terminate() override { loop_.stop(); }

 private:
  PollLoop& loop_;
  std::optional<std::filesystem::path> lockFile_;
};

}  // namespace tessarok::posix
