#include "desktops/freedesktop/DesktopServices.h"

#include <string>

namespace tessarok::freedesktop {

namespace {

using Open = std::unique_ptr<Bus>(platform::RunLoop&, std::string&);

/// Null without a bus; who needs it says what is missing then.
std::unique_ptr<Bus> opened(Open open, platform::RunLoop& loop) {
  std::string reason;
  return open(loop, reason);
}

}  // namespace

DesktopServices::DesktopServices(platform::RunLoop& loop, platform::Environment& environment,
                                 platform::SystemLog& log, posix::NotificationCentre& centre)
    : session_(opened(Bus::openSession, loop)),
      system_(opened(Bus::openSystem, loop)),
      notice_(session_.get(), log),
      programs_(loop),
      statusBar_(session_.get(), loop, log, IconTheme(environment)),
      workspace_(programs_, environment, notice_),
      secureInput_(session_.get(), loop, log),
      sessionWatch_(system_.get(), session_.get(), {environment, centre, log}) {}

}  // namespace tessarok::freedesktop
