#pragma once

#include <filesystem>
#include <optional>
#include <sys/types.h>
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

  /// The process that holds the lock on a file, as the kernel says: what is written in the file may
  /// be of a process that has long ended, and its number somebody else's. 0 when there is none, or
  /// none that can be seen from here. Not to be asked while this process holds it: to close the
  /// file would give it up.
  [[nodiscard]] static pid_t holderOf(const std::filesystem::path& lockFile);

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
