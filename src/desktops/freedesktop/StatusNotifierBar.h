#pragma once

#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/IconTheme.h"
#include "platform/RunLoop.h"
#include "platform/StatusBar.h"
#include "platform/SystemLog.h"

namespace tessarok::freedesktop {

/// The status icons of whatever panel the desktop has. Main thread.
class StatusNotifierBar final : public platform::StatusBar {
 public:
  /// `session` is null when there is no session bus; everything outlives the bar and its items.
  StatusNotifierBar(Bus* session, platform::RunLoop& loop, platform::SystemLog& log,
                    IconTheme theme);

  /// Null without a session bus, which is told once, in the system log, as is the end of the bus.
  std::unique_ptr<platform::StatusItem> createItem() override;
  /// Whether a panel shows the icon.
  [[nodiscard]] bool isShown() const { return shown_ && *shown_; }

 private:
  Bus* session_;
  platform::RunLoop& loop_;
  platform::SystemLog& log_;
  IconTheme theme_;
  bool saidNoBus_ = false;
  /// Null before there is an item.
  std::shared_ptr<const bool> shown_;
};

}  // namespace tessarok::freedesktop
