#pragma once

#include <string_view>

namespace tessarok::platform {

/// Where messages about start-up and files go. Any thread.
class SystemLog {
 public:
  virtual ~SystemLog() = default;
  virtual void write(std::string_view message) = 0;
};

}  // namespace tessarok::platform
