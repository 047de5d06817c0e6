#pragma once

#include <memory>

#include "platform/Desktop.h"
#include "platform/macos/MacAccessibility.h"
#include "platform/macos/MacBundle.h"
#include "platform/macos/MacEventTaps.h"
#include "platform/macos/MacEvents.h"
#include "platform/macos/MacInputSourceNotifications.h"
#include "platform/macos/MacInputSources.h"
#include "platform/macos/MacKeyboard.h"
#include "platform/macos/MacRunLoop.h"
#include "platform/macos/MacSecureInput.h"
#include "platform/macos/MacSerialQueues.h"
#include "platform/macos/MacUserDefaults.h"
#include "platform/macos/ObjectiveCServices.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/ProcessEnvironment.h"

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
  platform::Clock& clock() override { return *services_.clock; }
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
