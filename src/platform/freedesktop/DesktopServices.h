#pragma once

#include <memory>

#include "platform/Environment.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "platform/freedesktop/AtSpiSecureInput.h"
#include "platform/freedesktop/Bus.h"
#include "platform/freedesktop/FreedesktopWorkspace.h"
#include "platform/freedesktop/Notice.h"
#include "platform/freedesktop/Programs.h"
#include "platform/freedesktop/SessionWatch.h"
#include "platform/freedesktop/StatusNotifierBar.h"
#include "platform/posix/NotificationCentre.h"

namespace tessarok::freedesktop {

/// What every Linux desktop offers, whatever draws its windows: the status icon, opening files,
/// password fields, sleep and sessions. Each works without the others; without any bus all of
/// them do nothing and say so where a person would miss them. Main thread.
class DesktopServices final {
 public:
  /// Everything outlives the services. `centre` hears of sleep, sessions and screen savers.
  DesktopServices(platform::RunLoop& loop, platform::Environment& environment,
                  platform::SystemLog& log, posix::NotificationCentre& centre);

  [[nodiscard]] StatusNotifierBar& statusBar() { return statusBar_; }
  [[nodiscard]] FreedesktopWorkspace& workspace() { return workspace_; }
  [[nodiscard]] AtSpiSecureInput& secureInput() { return secureInput_; }
  [[nodiscard]] Notice& notice() { return notice_; }

 private:
  std::unique_ptr<Bus> session_;
  std::unique_ptr<Bus> system_;
  Notice notice_;
  Programs programs_;
  StatusNotifierBar statusBar_;
  FreedesktopWorkspace workspace_;
  AtSpiSecureInput secureInput_;
  SessionWatch sessionWatch_;
};

}  // namespace tessarok::freedesktop
