#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/SystemLog.h"

namespace tessarok::virtualdesktop {

/// Keeps messages in memory. Any thread.
class VirtualSystemLog final : public platform::SystemLog {
 public:
  void write(std::string_view message) override {
    const std::lock_guard lock(mutex_);
    messages_.emplace_back(message);
  }
  /// The messages since the last call.
  [[nodiscard]] std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(messages_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> messages_;
};

}  // namespace tessarok::virtualdesktop
