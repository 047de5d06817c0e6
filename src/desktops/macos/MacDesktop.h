#pragma once

#include <memory>

#include "desktops/macos/MacAccessibility.h"
#include "desktops/macos/MacBundle.h"
#include "desktops/macos/MacClock.h"
#include "desktops/macos/MacEventTaps.h"
#include "desktops/macos/MacEvents.h"
#include "desktops/macos/MacInputSourceNotifications.h"
#include "desktops/macos/MacInputSources.h"
#include "desktops/macos/MacKeyboard.h"
#include "desktops/macos/MacRunLoop.h"
#include "desktops/macos/MacSecureInput.h"
#include "desktops/macos/MacSerialQueues.h"
#include "desktops/macos/MacUserDefaults.h"
#include "desktops/macos/ObjectiveCServices.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "platform/Desktop.h"

namespace tessarok::macos {

/// The desktop of macOS 13 and later.
class MacDesktop final : public platform::Desktop {
 public:
  explicit MacDesktop(ObjectiveCServices services);
  /// With other files than the person's own.
  MacDesktop(ObjectiveCServices services, std::unique_ptr<platform::Files> files);

  platform::Accessibility& accessibility() override { return accessibility_; }
  platform::Application& application() override { return *services_.application; }
  platform::Bundle& bundle() override { return bundle_; }
  platform::Clock& clock() override { return clock_; }
  platform::Environment& environment() override { return environment_; }
  platform::EventTaps& eventTaps() override { return eventTaps_; }
  platform::Events& events() override { return events_; }
  platform::Files& files() override { return *files_; }
  platform::InputSources& inputSources() override { return inputSources_; }
  platform::Notifications& inputSourceNotifications() override { return inputSourceNotifications_; }
  platform::Keyboard& keyboard() override { return keyboard_; }
  platform::RunLoop& runLoop() override { return runLoop_; }
  platform::SecureInput& secureInput() override { return secureInput_; }
  platform::SerialQueues& serialQueues() override { return serialQueues_; }
  platform::StatusBar& statusBar() override { return *services_.statusBar; }
  platform::SystemLog& systemLog() override { return *services_.systemLog; }
  platform::UserDefaults& userDefaults() override { return userDefaults_; }
  platform::Workspace& workspace() override { return *services_.workspace; }
  platform::Notifications& workspaceNotifications() override {
    return *services_.workspaceNotifications;
  }

 private:
  ObjectiveCServices services_;
  std::unique_ptr<platform::Files> files_;
  MacAccessibility accessibility_;
  MacBundle bundle_;
  MacClock clock_;
  posix::ProcessEnvironment environment_;
  MacEventTaps eventTaps_;
  MacEvents events_;
  MacInputSources inputSources_;
  MacInputSourceNotifications inputSourceNotifications_;
  MacKeyboard keyboard_;
  MacRunLoop runLoop_;
  MacSecureInput secureInput_;
  MacSerialQueues serialQueues_;
  MacUserDefaults userDefaults_;
};

}  // namespace tessarok::macos
