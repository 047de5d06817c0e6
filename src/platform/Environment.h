#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessarok::platform {

/// The process's environment variables, read afresh at every call. Main thread.
class Environment {
 public:
  virtual ~Environment() = default;
  /// Absent when the variable is not set; an empty value is a value.
  [[nodiscard]] virtual std::optional<std::string> variable(std::string_view name) = 0;
};

}  // namespace tessarok::platform
