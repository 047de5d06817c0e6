#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "desktops/posix/ProcessEnvironment.h"
#include "platform/Environment.h"

namespace tessarok::virtualdesktop {

/// The process's environment, but for the variables of the diagnostic log. Main thread.
class VirtualEnvironment final : public platform::Environment {
 public:
  std::optional<std::string> variable(std::string_view name) override {
    if (name == "TESSAROK_DEBUG") return logs ? std::optional<std::string>("") : std::nullopt;
    if (name == "TESSAROK_DEBUG_PATH") return std::nullopt;
    return process_.variable(name);
  }
  /// The diagnostic log is on.
  bool logs = false;

 private:
  posix::ProcessEnvironment process_;
};

}  // namespace tessarok::virtualdesktop
