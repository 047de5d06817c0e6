#pragma once

#include <memory>
#include <string>
#include <vector>

#include "desktops/freedesktop/AtSpiSecureInput.h"
#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/FreedesktopWorkspace.h"
#include "desktops/freedesktop/Notice.h"
#include "desktops/freedesktop/Programs.h"
#include "desktops/freedesktop/SessionWatch.h"
#include "desktops/freedesktop/StatusNotifierBar.h"
#include "desktops/posix/NotificationCentre.h"
#include "platform/Environment.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"

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
  /// Null without a session bus.
  [[nodiscard]] Bus* session() { return session_.get(); }
  /// What this session does not offer, a sentence each.
  [[nodiscard]] std::vector<std::string> obstacles() const;

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
