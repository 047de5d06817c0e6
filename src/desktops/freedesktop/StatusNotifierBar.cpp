#include "desktops/freedesktop/StatusNotifierBar.h"

#include <utility>

#include "desktops/freedesktop/StatusNotifierItem.h"
#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

StatusNotifierBar::StatusNotifierBar(Bus* session, platform::RunLoop& loop,
                                     platform::SystemLog& log, IconTheme theme)
    : session_(session), loop_(loop), log_(log), theme_(std::move(theme)) {}

std::unique_ptr<platform::StatusItem> StatusNotifierBar::createItem() {
  if (session_ != nullptr) {
    session_->onClosed = [&log = log_](const std::string& reason) {
      log.write("Tessarok: " +
                posix::translated("the session bus is lost ({1}); the program runs on without its "
                                  "icon",
                                  {reason}));
    };
    auto item = std::make_unique<StatusNotifierItem>(*session_, loop_, log_, theme_);
    shown_ = item->shown();
    return item;
  }
  if (!std::exchange(saidNoBus_, true)) {
    log_.write("Tessarok: " + posix::translated("there is no session bus; the program runs on "
                                                "without its icon"));
  }
  return nullptr;
}

}  // namespace tessarok::freedesktop
