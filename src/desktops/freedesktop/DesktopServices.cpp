#include "desktops/freedesktop/DesktopServices.h"

#include "desktops/posix/Translation.h"

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

std::vector<std::string> DesktopServices::obstacles() const {
  std::vector<std::string> all;
  if (!statusBar_.isShown()) {
    all.emplace_back(
        posix::translatable("no panel shows status icons here, so there is no icon and no menu"));
  }
  if (!secureInput_.isListening()) {
    all.emplace_back(posix::translatable(
        "there is no accessibility bus (AT-SPI), so password entries are not known"));
  }
  if (!system_ || !system_->isOpen()) {
    all.emplace_back(
        posix::translatable("there is no system bus, so sleep and locked screens are not noticed"));
  }
  return all;
}

}  // namespace tessarok::freedesktop
