#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/Observation.h"

namespace tessarok::platform {

/// A centre that announces named changes. Main thread; callbacks run on the main thread.
class Notifications {
 public:
  virtual ~Notifications() = default;
  /// Calls `work` whenever `name` is announced, until the observation is destroyed. Null when
  /// the desktop has no such notification.
  [[nodiscard]] virtual std::unique_ptr<Observation> observe(std::string_view name,
                                                             std::function<void()> work) = 0;
};

}  // namespace tessarok::platform
