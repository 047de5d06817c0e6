#pragma once

#include "desktops/virtual/VirtualDesktop.h"

namespace tessarok::testing {

/// The virtual desktop, of which derived ones replace what they test with. Services that some of
/// them replace are given as the corrector sees them, the others as what they are.
class PartlyVirtualDesktop : public platform::Desktop {
 public:
  /// The keyboard, text field and clock behind the services.
  [[nodiscard]] virtual virtualdesktop::VirtualDesktop& base() = 0;

  virtualdesktop::VirtualAccessibility& accessibility() override { return base().accessibility(); }
  platform::Application& application() override { return base().application(); }
  platform::Bundle& bundle() override { return base().bundle(); }
  platform::Clock& clock() override { return base().clock(); }
  platform::Environment& environment() override { return base().environment(); }
  platform::EventTaps& eventTaps() override { return base().eventTaps(); }
  platform::Events& events() override { return base().events(); }
  platform::Files& files() override { return base().files(); }
  platform::InputSources& inputSources() override { return base().inputSources(); }
  posix::NotificationCentre& inputSourceNotifications() override {
    return base().inputSourceNotifications();
  }
  platform::Keyboard& keyboard() override { return base().keyboard(); }
  platform::RunLoop& runLoop() override { return base().runLoop(); }
  virtualdesktop::VirtualSecureInput& secureInput() override { return base().secureInput(); }
  platform::SerialQueues& serialQueues() override { return base().serialQueues(); }
  platform::StatusBar& statusBar() override { return base().statusBar(); }
  virtualdesktop::VirtualSystemLog& systemLog() override { return base().systemLog(); }
  virtualdesktop::VirtualUserDefaults& userDefaults() override { return base().userDefaults(); }
  platform::Workspace& workspace() override { return base().workspace(); }
  posix::NotificationCentre& workspaceNotifications() override {
    return base().workspaceNotifications();
  }
};

}  // namespace tessarok::testing
