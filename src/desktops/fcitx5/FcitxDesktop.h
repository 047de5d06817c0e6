#pragma once

#include <fcitx/instance.h>
#include <filesystem>
#include <memory>
#include <optional>

#include "desktops/fcitx5/FcitxClients.h"
#include "desktops/fcitx5/FcitxInputMethods.h"
#include "desktops/fcitx5/FcitxRunLoop.h"
#include "desktops/fcitx5/FcitxStatusBar.h"
#include "desktops/fcitx5/WaylandOutlet.h"
#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/FreedesktopWorkspace.h"
#include "desktops/freedesktop/Notice.h"
#include "desktops/freedesktop/Programs.h"
#include "desktops/freedesktop/SessionWatch.h"
#include "desktops/inputmethod/FieldEventTaps.h"
#include "desktops/inputmethod/FieldInputSources.h"
#include "desktops/inputmethod/FieldSecureInput.h"
#include "desktops/inputmethod/FrameworkApplication.h"
#include "desktops/inputmethod/Guard.h"
#include "desktops/inputmethod/KeyFlow.h"
#include "desktops/plain/FreeAccessibility.h"
#include "desktops/plain/OnlyKeyboard.h"
#include "desktops/plain/PlainEvents.h"
#include "desktops/posix/DataDirectoryBundle.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/StandardErrorLog.h"
#include "desktops/posix/ThreadQueues.h"
#include "platform/Desktop.h"

namespace tessarok::fcitx5 {

/// The text fields of every program that Fcitx serves, as a desktop. Main thread.
class FcitxDesktop final : public platform::Desktop {
 public:
  /// Both outlive this object. `resources` is the directory of the data files, absent to search
  /// for it.
  FcitxDesktop(fcitx::Instance& instance, inputmethod::Guard& guard,
               std::optional<std::filesystem::path> resources);
  FcitxDesktop(const FcitxDesktop&) = delete;
  FcitxDesktop& operator=(const FcitxDesktop&) = delete;
  ~FcitxDesktop() override;

  plain::FreeAccessibility& accessibility() override { return accessibility_; }
  inputmethod::FrameworkApplication& application() override { return application_; }
  posix::DataDirectoryBundle& bundle() override { return bundle_; }
  posix::MonotonicClock& clock() override { return clock_; }
  posix::ProcessEnvironment& environment() override { return environment_; }
  inputmethod::FieldEventTaps& eventTaps() override { return eventTaps_; }
  plain::PlainEvents<inputmethod::FieldEvent>& events() override { return events_; }
  posix::PosixFiles& files() override { return *files_; }
  inputmethod::FieldInputSources& inputSources() override { return inputSources_; }
  posix::NotificationCentre& inputSourceNotifications() override {
    return inputSourceNotifications_;
  }
  plain::OnlyKeyboard& keyboard() override { return keyboard_; }
  FcitxRunLoop& runLoop() override { return runLoop_; }
  inputmethod::FieldSecureInput& secureInput() override { return secureInput_; }
  posix::ThreadQueues& serialQueues() override { return serialQueues_; }
  FcitxStatusBar& statusBar() override { return statusBar_; }
  posix::StandardErrorLog& systemLog() override { return systemLog_; }
  posix::SettingsFile& userDefaults() override { return userDefaults_; }
  freedesktop::FreedesktopWorkspace& workspace() override { return workspace_; }
  posix::NotificationCentre& workspaceNotifications() override { return workspaceNotifications_; }

  [[nodiscard]] inputmethod::KeyFlow& keyFlow() { return keyFlow_; }
  /// Null without a session bus.
  [[nodiscard]] freedesktop::Bus* sessionBus() { return sessionBus_.get(); }

  // What Fcitx tells.

  void keyEvent(fcitx::KeyEvent& event);
  void focusIn(fcitx::InputContext& context);
  void focusOut(fcitx::InputContext& context);
  void reset(fcitx::InputContext& context);
  void textReported(fcitx::InputContext& context);
  void destroyed(fcitx::InputContext& context);
  /// The input method of a text field, or the list of them, is another.
  void inputMethodChanged();
  void groupChanged();
  /// The settings that say which keys convert by hand and which pause are read again.
  void readKeySettings();

 private:
  void announceLater(platform::Notification notification);

  posix::MonotonicClock clock_;
  FcitxRunLoop runLoop_;
  posix::StandardErrorLog systemLog_;
  std::unique_ptr<posix::PosixFiles> files_ = posix::PosixFiles::ofUser();
  plain::FreeAccessibility accessibility_;
  inputmethod::FrameworkApplication application_;
  posix::DataDirectoryBundle bundle_;
  posix::ProcessEnvironment environment_;
  posix::SettingsFile userDefaults_;
  posix::ThreadQueues serialQueues_;
  posix::NotificationCentre inputSourceNotifications_;
  posix::NotificationCentre workspaceNotifications_;
  FcitxClients clients_;
  FcitxInputMethods inputMethods_;
  inputmethod::FieldInputSources inputSources_{inputMethods_};
  inputmethod::FieldEventTaps eventTaps_;
  plain::PlainEvents<inputmethod::FieldEvent> events_;
  WaylandOutlet outlet_;
  /// It has the key beside the left Shift, which counts only where its characters are its own.
  plain::OnlyKeyboard keyboard_{clock_, platform::PhysicalLayoutType::iso};
  inputmethod::KeyFlow keyFlow_;
  inputmethod::FieldSecureInput secureInput_;
  FcitxStatusBar statusBar_;
  /// Null without such a bus.
  std::unique_ptr<freedesktop::Bus> sessionBus_;
  std::unique_ptr<freedesktop::Bus> systemBus_;
  freedesktop::SessionWatch sessionWatch_;
  freedesktop::Notice notice_;
  freedesktop::Programs programs_;
  freedesktop::FreedesktopWorkspace workspace_;
  /// The current input source that observers know of.
  std::optional<std::string> announced_;
};

}  // namespace tessarok::fcitx5
