#pragma once

#include <memory>
#include <string>

#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/FreedesktopWorkspace.h"
#include "desktops/freedesktop/IconTheme.h"
#include "desktops/freedesktop/Notice.h"
#include "desktops/freedesktop/Programs.h"
#include "desktops/freedesktop/StatusNotifierBar.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/desktops/freedesktop/Pump.h"
#include "tests/support/PartlyVirtualDesktop.h"

namespace tessarok::testing {

/// The virtual desktop with the status icon and the workspace of a Linux desktop. It is the
/// process's desktop from its making on.
class BusDesktop final : public PartlyVirtualDesktop {
 public:
  /// `address` is the session bus; empty for none.
  explicit BusDesktop(const std::string& address,
                      freedesktop::IconTheme theme = {{TESSAROK_ICONS}, std::nullopt})
      : session_(opened(loop_, address)),
        statusBar_(session_.get(), loop_, systemLog(), std::move(theme)) {
    platform::setDesktop(*this);
  }

  [[nodiscard]] virtualdesktop::VirtualDesktop& base() override { return base_; }
  [[nodiscard]] freedesktop::Bus* session() { return session_.get(); }
  [[nodiscard]] freedesktop::Programs& programs() { return programs_; }
  [[nodiscard]] freedesktop::Notice& notice() { return notice_; }

  Pump& runLoop() override { return loop_; }
  freedesktop::StatusNotifierBar& statusBar() override { return statusBar_; }
  freedesktop::FreedesktopWorkspace& workspace() override { return workspace_; }
  virtualdesktop::VirtualApplication& application() override { return base_.application(); }

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
