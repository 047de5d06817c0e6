#pragma once

#include <memory>
#include <string>

#include "freedesktop/Pump.h"
#include "platform/freedesktop/Bus.h"
#include "platform/freedesktop/FreedesktopWorkspace.h"
#include "platform/freedesktop/IconTheme.h"
#include "platform/freedesktop/Notice.h"
#include "platform/freedesktop/Programs.h"
#include "platform/freedesktop/StatusNotifierBar.h"
#include "platform/virtual/TemporaryDirectory.h"
#include "platform/virtual/VirtualDesktop.h"

namespace tessarok::testing {

/// The virtual desktop with the status icon and the workspace of a Linux desktop. It is the
/// process's desktop from its making on.
class BusDesktop final : public platform::Desktop {
 public:
  /// `address` is the session bus; empty for none.
  explicit BusDesktop(const std::string& address,
                      freedesktop::IconTheme theme = {{TESSAROK_ICONS}, std::nullopt})
      : session_(opened(loop_, address)),
        statusBar_(session_.get(), loop_, systemLog(), std::move(theme)) {
    platform::setDesktop(*this);
  }

  /// The keyboard, text field and clock behind the services.
  [[nodiscard]] virtualdesktop::VirtualDesktop& base() { return base_; }
  [[nodiscard]] freedesktop::Bus* session() { return session_.get(); }
  [[nodiscard]] freedesktop::Programs& programs() { return programs_; }
  [[nodiscard]] freedesktop::Notice& notice() { return notice_; }

  Pump& runLoop() override { return loop_; }
  freedesktop::StatusNotifierBar& statusBar() override { return statusBar_; }
  freedesktop::FreedesktopWorkspace& workspace() override { return workspace_; }

  platform::Accessibility& accessibility() override { return base_.accessibility(); }
  virtualdesktop::VirtualApplication& application() override { return base_.application(); }
  platform::Bundle& bundle() override { return base_.bundle(); }
  platform::Clock& clock() override { return base_.clock(); }
  platform::Environment& environment() override { return base_.environment(); }
  platform::EventTaps& eventTaps() override { return base_.eventTaps(); }
  platform::Events& events() override { return base_.events(); }
  platform::Files& files() override { return base_.files(); }
  platform::InputSources& inputSources() override { return base_.inputSources(); }
  platform::Notifications& inputSourceNotifications() override {
    return base_.inputSourceNotifications();
  }
  platform::Keyboard& keyboard() override { return base_.keyboard(); }
  platform::SecureInput& secureInput() override { return base_.secureInput(); }
  platform::SerialQueues& serialQueues() override { return base_.serialQueues(); }
  virtualdesktop::VirtualSystemLog& systemLog() override { return base_.systemLog(); }
  virtualdesktop::VirtualUserDefaults& userDefaults() override { return base_.userDefaults(); }
  posix::NotificationCentre& workspaceNotifications() override {
    return base_.workspaceNotifications();
  }

 private:
  static std::unique_ptr<freedesktop::Bus> opened(platform::RunLoop& loop,
                                                  const std::string& address) {
    std::string reason;
    return address.empty() ? nullptr : freedesktop::Bus::openAddress(loop, address, reason);
  }

  virtualdesktop::TemporaryDirectory home_;
  virtualdesktop::VirtualDesktop base_{home_.path(), TESSAROK_TEST_DATA};
  Pump loop_{base_.runLoop()};
  std::unique_ptr<freedesktop::Bus> session_;
  freedesktop::Notice notice_{session_.get(), base_.systemLog()};
  freedesktop::Programs programs_{loop_};
  freedesktop::StatusNotifierBar statusBar_;
  freedesktop::FreedesktopWorkspace workspace_{programs_, base_.environment(), notice_};
};

}  // namespace tessarok::testing
