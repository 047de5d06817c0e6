#pragma once

#include <optional>
#include <string_view>

namespace tessarok::platform {

/// The person's saved switches. Main thread.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;
  /// The saved value; absent when it was never set.
  [[nodiscard]] virtual std::optional<bool> boolean(std::string_view key) = 0;
  virtual void setBoolean(std::string_view key, bool value) = 0;
};

}  // namespace tessarok::platform
