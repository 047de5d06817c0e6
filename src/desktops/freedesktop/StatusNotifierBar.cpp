#include "desktops/freedesktop/StatusNotifierBar.h"

#include <utility>

#include "desktops/freedesktop/StatusNotifierItem.h"

namespace tessarok::freedesktop {

StatusNotifierBar::StatusNotifierBar(Bus* session, platform::RunLoop& loop,
                                     platform::SystemLog& log, IconTheme theme)
    : session_(session), loop_(loop), log_(log), theme_(std::move(theme)) {}

std::unique_ptr<platform::StatusItem> StatusNotifierBar::createItem() {
  if (session_ != nullptr) {
    session_->onClosed = [&log = log_](const std::string& reason) {
      log.write("Tessarok: the session bus is lost (" + reason +
                "); the program runs on without its icon");
    };
    auto item = std::make_unique<StatusNotifierItem>(*session_, loop_, log_, theme_);
    shown_ = item->shown();
    return item;
  }
  if (!std::exchange(saidNoBus_, true)) {
    log_.write("Tessarok: there is no session bus; the program runs on without its icon");
  }
  return nullptr;
}

}  // namespace tessarok::freedesktop
