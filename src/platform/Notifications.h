#pragma once

#include <functional>
#include <memory>

#include "platform/Notification.h"
#include "platform/Observation.h"

namespace tessarok::platform {

/// A centre that announces changes. Main thread; callbacks run on the main thread.
class Notifications {
 public:
  virtual ~Notifications() = default;
  /// Calls `work` whenever `notification` is announced, until the observation is destroyed. Null
  /// when this centre announces no such thing.
  [[nodiscard]] virtual std::unique_ptr<Observation> observe(Notification notification,
                                                             std::function<void()> work) = 0;
};

}  // namespace tessarok::platform
