#pragma once

#include "platform/Notifications.h"

namespace tessarok::macos {

/// The shared workspace's notification centre, which announces on the main thread.
class MacWorkspaceNotifications final : public platform::Notifications {
 public:
  std::unique_ptr<platform::Observation> observe(std::string_view name,
                                                 std::function<void()> work) override;
};

}  // namespace tessarok::macos
