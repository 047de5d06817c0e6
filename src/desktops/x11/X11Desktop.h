#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "desktops/plain/FreeAccessibility.h"
#include "desktops/plain/NoStatusBar.h"
#include "desktops/plain/NoWorkspace.h"
#include "desktops/posix/CallbackSource.h"
#include "desktops/posix/DataDirectoryBundle.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/posix/PollLoop.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessApplication.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/StandardErrorLog.h"
#include "desktops/posix/ThreadQueues.h"
#include "desktops/x11/FocusWatch.h"
#include "desktops/x11/Keyboards.h"
#include "desktops/x11/Layouts.h"
#include "desktops/x11/LifeLine.h"
#include "desktops/x11/SessionServices.h"
#include "desktops/x11/Typist.h"
#include "desktops/x11/X11EventTaps.h"
#include "desktops/x11/X11Events.h"
#include "desktops/x11/X11Keyboard.h"
#include "desktops/x11/X11SecureInput.h"
#include "desktops/x11/XConnection.h"
#include "platform/Desktop.h"

union _XEvent;

namespace tessarok::x11 {

/// A desktop on an X server. Main thread.
class X11Desktop final : public platform::Desktop {
 public:
  /// `lifeLine` is null for a process that nobody watches over; `resources` is the directory of the
  /// data files, absent to search for it; `makeServices` may be empty. Throws `std::runtime_error`
  /// when the server has no keymap.
  X11Desktop(std::unique_ptr<XConnection> connection, std::unique_ptr<LifeLine> lifeLine,
             std::optional<std::filesystem::path> resources,
             const MakeSessionServices& makeServices);
  X11Desktop(const X11Desktop&) = delete;
  X11Desktop& operator=(const X11Desktop&) = delete;
  ~X11Desktop() override;

  plain::FreeAccessibility& accessibility() override { return accessibility_; }
  posix::ProcessApplication& application() override { return application_; }
  posix::DataDirectoryBundle& bundle() override { return bundle_; }
  posix::MonotonicClock& clock() override { return clock_; }
  posix::ProcessEnvironment& environment() override { return environment_; }
  X11EventTaps& eventTaps() override { return *eventTaps_; }
  X11Events& events() override { return events_; }
  posix::PosixFiles& files() override { return *files_; }
  Layouts& inputSources() override { return layouts_; }
  posix::NotificationCentre& inputSourceNotifications() override {
    return inputSourceNotifications_;
  }
  X11Keyboard& keyboard() override { return keyboard_; }
  posix::PollLoop& runLoop() override { return runLoop_; }
  X11SecureInput& secureInput() override { return secureInput_; }
  posix::ThreadQueues& serialQueues() override { return serialQueues_; }
  platform::StatusBar& statusBar() override;
  posix::StandardErrorLog& systemLog() override { return systemLog_; }
  posix::SettingsFile& userDefaults() override { return userDefaults_; }
  platform::Workspace& workspace() override;
  posix::NotificationCentre& workspaceNotifications() override { return workspaceNotifications_; }

  /// The X server has gone, which was said; the main loop is stopped.
  [[nodiscard]] bool isServerLost() { return connection_->isLost(); }
  /// Why the keyboards could not be had when that was last tried in vain; empty for never.
  [[nodiscard]] const std::string& problem() const { return reported_; }

 private:
  void connect();
  void serverLost();
  [[nodiscard]] bool hasEvents() const;
  void serve();
  void dispatch(_XEvent& event);
  void dispatchXkb(const _XEvent& event);
  void dispatchInput(_XEvent& event);
  void keymapChanged();
  void copyKeymap();
  void keyboardsHeld(bool held);
  /// Waits for the server, passes on the keys that held keyboards have sent, and lets no key down.
  void passOnWhatHasCome();
  void watchdogEnded();
  void report(const std::string& problem);

  posix::MonotonicClock clock_;
  posix::PollLoop runLoop_{clock_};
  posix::StandardErrorLog systemLog_;
  std::unique_ptr<posix::PosixFiles> files_ = posix::PosixFiles::ofUser();
  std::unique_ptr<LifeLine> lifeLine_;
  std::unique_ptr<XConnection> connection_;
  posix::ProcessApplication application_;
  posix::DataDirectoryBundle bundle_;
  posix::ProcessEnvironment environment_;
  posix::SettingsFile userDefaults_;
  posix::NotificationCentre inputSourceNotifications_;
  posix::NotificationCentre workspaceNotifications_;
  Layouts layouts_;
  FocusWatch focus_;
  Keyboards keyboards_;
  Typist typist_;
  std::unique_ptr<X11EventTaps> eventTaps_;
  plain::FreeAccessibility accessibility_;
  X11Events events_;
  X11Keyboard keyboard_;
  plain::NoStatusBar noStatusBar_;
  plain::NoWorkspace noWorkspace_;
  SessionServices services_;
  X11SecureInput secureInput_;
  posix::ThreadQueues serialQueues_;
  posix::CallbackSource source_;
  bool isCopyDue_ = false;
  /// The keymap that the keyboards have.
  std::string copiedKeymap_;
  /// What was reported last; the same problem comes again every few seconds.
  std::string reported_;
};

}  // namespace tessarok::x11
