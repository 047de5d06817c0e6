#pragma once

#include "desktops/posix/NotificationCentre.h"
#include "platform/Environment.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"

namespace tessarok::x11 {

/// What `SessionServices` may use; all of it outlives them. `workspaceNotifications` is where they
/// announce sleep and changes of the session.
struct SessionContext {
  platform::RunLoop& runLoop;
  platform::Environment& environment;
  platform::SystemLog& systemLog;
  posix::NotificationCentre& workspaceNotifications;
};

}  // namespace tessarok::x11
