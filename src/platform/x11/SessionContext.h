#pragma once

#include "platform/Environment.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "platform/posix/NotificationCentre.h"

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
