#pragma once

#include "platform/Notifications.h"

namespace tessarok::macos {

/// The system-wide centre through which every program hears of changes of the input sources.
/// Observers are called on the main thread, which is the one that registers them.
class MacInputSourceNotifications final : public platform::Notifications {
 public:
  std::unique_ptr<platform::Observation> observe(platform::Notification notification,
                                                 std::function<void()> work) override;
};

}  // namespace tessarok::macos
