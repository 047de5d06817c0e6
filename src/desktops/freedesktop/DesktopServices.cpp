#include "desktops/freedesktop/DesktopServices.h"

namespace tessarok::freedesktop {

DesktopServices::DesktopServices(platform::RunLoop& loop, platform::Environment& environment,
                                 platform::SystemLog& log, posix::NotificationCentre& centre)
    : session_(Bus::openSession(loop)),
      system_(Bus::openSystem(loop)),
      notice_(session_.get(), log),
      programs_(loop),
      statusBar_(session_.get(), loop, log, IconTheme(environment)),
      workspace_(programs_, environment, notice_),
      secureInput_(session_.get(), loop, log),
      sessionWatch_(system_.get(), session_.get(), {environment, centre, log}) {}

}  // namespace tessarok::freedesktop
