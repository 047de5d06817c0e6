#pragma once

#include <functional>
#include <memory>

#include "platform/Environment.h"
#include "platform/RunLoop.h"
#include "platform/SecureInput.h"
#include "platform/StatusBar.h"
#include "platform/SystemLog.h"
#include "platform/Workspace.h"
#include "platform/posix/NotificationCentre.h"

namespace tessarok::x11 {

/// What the session offers beside its display. Each may be null, for a session that does not
/// offer it.
struct SessionServices {
  platform::StatusBar* statusBar = nullptr;
  /// Besides a keyboard that another program has taken, which the X server tells.
  platform::SecureInput* secureInput = nullptr;
  platform::Workspace* workspace = nullptr;
  /// Keeps all of them alive.
  std::shared_ptr<void> owner;
};

/// What the services may use; all of it outlives them. `workspaceNotifications` is where they
/// announce sleep and changes of the session.
struct SessionContext {
  platform::RunLoop& runLoop;
  platform::Environment& environment;
  platform::SystemLog& systemLog;
  posix::NotificationCentre& workspaceNotifications;
};

using MakeSessionServices = std::function<SessionServices(const SessionContext&)>;

}  // namespace tessarok::x11
