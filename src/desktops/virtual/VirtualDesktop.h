#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/posix/DataDirectoryBundle.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/virtual/TextField.h"
#include "desktops/virtual/VirtualAccessibility.h"
#include "desktops/virtual/VirtualApplication.h"
#include "desktops/virtual/VirtualEnvironment.h"
#include "desktops/virtual/VirtualEventTaps.h"
#include "desktops/virtual/VirtualEvents.h"
#include "desktops/virtual/VirtualFiles.h"
#include "desktops/virtual/VirtualInputSources.h"
#include "desktops/virtual/VirtualKeyboard.h"
#include "desktops/virtual/VirtualRunLoop.h"
#include "desktops/virtual/VirtualSecureInput.h"
#include "desktops/virtual/VirtualSerialQueues.h"
#include "desktops/virtual/VirtualStatusBar.h"
#include "desktops/virtual/VirtualSystemLog.h"
#include "desktops/virtual/VirtualUserDefaults.h"
#include "desktops/virtual/VirtualWorkspace.h"
#include "platform/Desktop.h"
#include "typing/KeyCodes.h"

namespace tessarok::virtualdesktop {

/// A desktop without display, permission or real time: a keyboard, a text field and a clock that
/// is moved by hand. Everything a person or the system can do to the program is a call here.
/// Each call is one turn of the main loop.
class VirtualDesktop final : public platform::Desktop {
 public:
  /// A key going down.
  struct KeyDown {
    KeyCode code = 0;
    /// Masks of `platform::eventFlags`.
    std::uint64_t modifiers = 0;
    bool autorepeat = false;
    /// In place of what the layout gives.
    std::optional<std::u16string> characters = std::nullopt;
    /// What the event's maker attached; 0 on hardware events.
    std::int64_t userData = 0;
  };

  /// `home` exists; `resources` is the directory of the data files, absent to search for it.
  VirtualDesktop(const std::filesystem::path& home, std::optional<std::filesystem::path> resources);

  void keyDown(const KeyDown& key);
  void keyUp(KeyCode code, std::uint64_t modifiers);
  /// Presses and releases a key.
  void stroke(const KeyTable::Stroke& stroke);
  void click(platform::EventType button);
  void selectInputSource(const std::string& identifier);
  void enableInputSources(std::vector<std::string> identifiers);
  void setTrusted(bool trusted);
  /// The system disables the tap and tells it so by such an event.
  void disableTap(platform::EventType pseudoEvent);
  void announceToWorkspace(platform::Notification notification);
  /// False when no menu has an item with this title.
  bool chooseMenuItem(const std::string& title);
  /// Lets time pass; what falls due in it is done.
  void wait(double seconds);
  /// Runs what is queued on the main queue, and before it what other threads have to do.
  void endTurn() { runLoop_.runQueue(); }

  /// Events that the program posted and events that reached the application, as text, since the
  /// last call; kept only with `recordsEvents`.
  [[nodiscard]] std::vector<std::string> takePosted() { return std::exchange(posted_, {}); }
  [[nodiscard]] std::vector<std::string> takeDelivered() { return std::exchange(delivered_, {}); }
  bool recordsEvents = false;

  [[nodiscard]] const TextField& textField() const { return textField_; }
  void clearTextField() { textField_.clear(); }

  VirtualAccessibility& accessibility() override { return accessibility_; }
  VirtualApplication& application() override { return application_; }
  posix::DataDirectoryBundle& bundle() override { return bundle_; }
  VirtualRunLoop& clock() override { return runLoop_; }
  VirtualEnvironment& environment() override { return environment_; }
  VirtualEventTaps& eventTaps() override { return eventTaps_; }
  VirtualEvents& events() override { return events_; }
  VirtualFiles& files() override { return files_; }
  VirtualInputSources& inputSources() override { return inputSources_; }
  posix::NotificationCentre& inputSourceNotifications() override {
    return inputSourceNotifications_;
  }
  VirtualKeyboard& keyboard() override { return keyboard_; }
  VirtualRunLoop& runLoop() override { return runLoop_; }
  VirtualSecureInput& secureInput() override { return secureInput_; }
  VirtualSerialQueues& serialQueues() override { return serialQueues_; }
  VirtualStatusBar& statusBar() override { return statusBar_; }
  VirtualSystemLog& systemLog() override { return systemLog_; }
  VirtualUserDefaults& userDefaults() override { return userDefaults_; }
  VirtualWorkspace& workspace() override { return workspace_; }
  posix::NotificationCentre& workspaceNotifications() override { return workspaceNotifications_; }

 private:
  void sendKey(platform::EventType type, const KeyDown& key);
  void deliver(const VirtualEvent& event);
  void queueSelectedNotification();

  VirtualFiles files_;
  posix::DataDirectoryBundle bundle_;
  VirtualRunLoop runLoop_;
  VirtualAccessibility accessibility_;
  VirtualApplication application_;
  VirtualEnvironment environment_;
  VirtualEventTaps eventTaps_;
  VirtualEvents events_;
  VirtualInputSources inputSources_;
  posix::NotificationCentre inputSourceNotifications_;
  VirtualKeyboard keyboard_;
  VirtualSecureInput secureInput_;
  VirtualSerialQueues serialQueues_;
  VirtualStatusBar statusBar_;
  VirtualSystemLog systemLog_;
  VirtualUserDefaults userDefaults_;
  VirtualWorkspace workspace_;
  posix::NotificationCentre workspaceNotifications_;
  TextField textField_;
  std::vector<std::string> posted_;
  std::vector<std::string> delivered_;
};

}  // namespace tessarok::virtualdesktop
