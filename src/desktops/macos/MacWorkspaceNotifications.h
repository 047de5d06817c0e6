#pragma once

#include "platform/Notifications.h"

namespace tessarok::macos {

/// The shared workspace's notification centre, which announces on the main thread.
class MacWorkspaceNotifications final : public platform::Notifications {
 public:
  std::unique_ptr<platform::Observation> observe(platform::Notification notification,
                                                 std::function<void()> work) override;
};

}  // namespace tessarok::macos
