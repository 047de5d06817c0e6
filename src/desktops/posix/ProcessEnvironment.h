#pragma once

#include "platform/Environment.h"

namespace tessarok::posix {

/// The environment that the process was started with.
class ProcessEnvironment final : public platform::Environment {
 public:
  std::optional<std::string> variable(std::string_view name) override;
};

}  // namespace tessarok::posix
