#pragma once

#include <functional>
#include <memory>

#include "desktops/x11/SessionContext.h"
#include "platform/SecureInput.h"
#include "platform/StatusBar.h"
#include "platform/Workspace.h"

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

/// Asks the session once, when the parts of the desktop that it may use are there.
using MakeSessionServices = std::function<SessionServices(const SessionContext&)>;

}  // namespace tessarok::x11
