#pragma once

#include <optional>
#include <string_view>

#include "platform/Notification.h"

namespace tessarok::virtualdesktop {

/// What the workspace announces under a name of the system's, as scripts write it; absent for what
/// the corrector is never told.
[[nodiscard]] std::optional<platform::Notification> workspaceNotificationNamed(
    std::string_view name);

}  // namespace tessarok::virtualdesktop
