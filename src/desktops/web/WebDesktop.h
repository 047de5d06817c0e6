#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "desktops/plain/FreeAccessibility.h"
#include "desktops/plain/MemoryBundle.h"
#include "desktops/plain/MemoryFiles.h"
#include "desktops/plain/NoQueues.h"
#include "desktops/plain/NoWorkspace.h"
#include "desktops/plain/OnlyKeyboard.h"
#include "desktops/plain/PlainEvents.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/virtual/VirtualApplication.h"
#include "desktops/virtual/VirtualInputSources.h"
#include "desktops/virtual/VirtualRunLoop.h"
#include "desktops/virtual/VirtualSecureInput.h"
#include "desktops/virtual/VirtualStatusBar.h"
#include "desktops/virtual/VirtualSystemLog.h"
#include "desktops/virtual/VirtualUserDefaults.h"
#include "desktops/web/FieldEdit.h"
#include "desktops/web/WebEventTaps.h"
#include "platform/Desktop.h"
#include "typing/KeyCodes.h"
#include "words/Language.h"

namespace tessarok::web {

/// The text fields of a web page, as a desktop. What needs no system it has from the virtual one;
/// its files are in memory, it has one thread, and the page tells it the time with every call. Each
/// call is one turn of the main loop.
class WebDesktop final : public platform::Desktop {
 public:
  /// A key going down in a field.
  struct KeyDown {
    KeyCode code = 0;
    /// Masks of `platform::eventFlags`.
    std::uint64_t modifiers = 0;
    bool autorepeat = false;
  };

  WebDesktop();

  /// Lets time pass up to `now`, in seconds on a scale of the page; what falls due is done.
  void advanceTo(double now);

  /// What a key does to the field. It stays until the next call.
  const FieldEdit& keyDown(const KeyDown& key);
  void keyUp(KeyCode code, std::uint64_t modifiers);
  /// The same for a text that comes without a key of ours: from a phone, from a key whose name says
  /// nothing, from an input method. An empty one stands for a change that cannot be told.
  const FieldEdit& textTyped(std::u16string_view text);
  /// The caret may be in another place.
  void click();
  /// Another field, window or tab has the focus.
  void focusMoved();
  /// The person selects a layout.
  void selectLayout(Language language);
  [[nodiscard]] Language layout() const;
  /// Chooses an item of the program's menu.
  void chooseMenuItem(std::string_view title);

  plain::FreeAccessibility& accessibility() override { return accessibility_; }
  virtualdesktop::VirtualApplication& application() override { return application_; }
  plain::MemoryBundle& bundle() override { return bundle_; }
  virtualdesktop::VirtualRunLoop& clock() override { return runLoop_; }
  platform::Environment& environment() override { return environment_; }
  WebEventTaps& eventTaps() override { return eventTaps_; }
  plain::PlainEvents<WebEvent>& events() override { return events_; }
  plain::MemoryFiles& files() override { return files_; }
  virtualdesktop::VirtualInputSources& inputSources() override { return inputSources_; }
  posix::NotificationCentre& inputSourceNotifications() override {
    return inputSourceNotifications_;
  }
  plain::OnlyKeyboard& keyboard() override { return keyboard_; }
  virtualdesktop::VirtualRunLoop& runLoop() override { return runLoop_; }
  virtualdesktop::VirtualSecureInput& secureInput() override { return secureInput_; }
  plain::NoQueues& serialQueues() override { return serialQueues_; }
  virtualdesktop::VirtualStatusBar& statusBar() override { return statusBar_; }
  virtualdesktop::VirtualSystemLog& systemLog() override { return systemLog_; }
  virtualdesktop::VirtualUserDefaults& userDefaults() override { return userDefaults_; }
  plain::NoWorkspace& workspace() override { return workspace_; }
  posix::NotificationCentre& workspaceNotifications() override { return workspaceNotifications_; }

 private:
  /// A page has no variables.
  class NoEnvironment final : public platform::Environment {
   public:
    std::optional<std::string> variable(std::string_view) override { return std::nullopt; }
  };

  [[nodiscard]] KeyCode meaningOf(KeyCode code) const;
  [[nodiscard]] std::u16string textOf(const KeyDown& key) const;
  const FieldEdit& send(platform::EventType type, std::u16string_view keyText = {});
  void queueSelectedNotification();

  plain::MemoryFiles files_;
  plain::MemoryBundle bundle_{files_};
  virtualdesktop::VirtualRunLoop runLoop_;
  plain::FreeAccessibility accessibility_;
  virtualdesktop::VirtualApplication application_;
  NoEnvironment environment_;
  WebEventTaps eventTaps_;
  plain::PlainEvents<WebEvent> events_;
  virtualdesktop::VirtualInputSources inputSources_;
  posix::NotificationCentre inputSourceNotifications_;
  plain::OnlyKeyboard keyboard_{runLoop_, platform::PhysicalLayoutType::ansi};
  virtualdesktop::VirtualSecureInput secureInput_;
  plain::NoQueues serialQueues_;
  virtualdesktop::VirtualStatusBar statusBar_;
  virtualdesktop::VirtualSystemLog systemLog_;
  virtualdesktop::VirtualUserDefaults userDefaults_;
  plain::NoWorkspace workspace_;
  posix::NotificationCentre workspaceNotifications_;
  /// The event in hand; a member only to keep its storage.
  WebEvent event_;
  double now_ = 0;
};

}  // namespace tessarok::web
