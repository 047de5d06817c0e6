#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "desktops/plain/FreeAccessibility.h"
#include "desktops/plain/NoWorkspace.h"
#include "desktops/plain/OnlyKeyboard.h"
#include "desktops/plain/PlainEvents.h"
#include "desktops/posix/DataDirectoryBundle.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/posix/PollLoop.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessApplication.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/ThreadQueues.h"
#include "desktops/terminal/TerminalEventTaps.h"
#include "desktops/terminal/TerminalInputSources.h"
#include "desktops/terminal/TerminalLog.h"
#include "desktops/terminal/TerminalSecureInput.h"
#include "desktops/terminal/TerminalStatusBar.h"
#include "desktops/terminal/TerminalTextContext.h"
#include "platform/Desktop.h"

namespace tessarok::terminal {

/// One program in a pseudo-terminal, as a desktop. `TerminalSession` moves the bytes.
class TerminalDesktop final : public platform::Desktop {
 public:
  /// `resources` is the directory of the data files, absent to search for it.
  explicit TerminalDesktop(std::optional<std::filesystem::path> resources);

  /// Another program has the screen, or has left it: words are not carried over.
  void announceOtherProgram();

  plain::FreeAccessibility& accessibility() override { return accessibility_; }
  posix::ProcessApplication& application() override { return application_; }
  posix::DataDirectoryBundle& bundle() override { return bundle_; }
  posix::MonotonicClock& clock() override { return clock_; }
  posix::ProcessEnvironment& environment() override { return environment_; }
  TerminalEventTaps& eventTaps() override { return eventTaps_; }
  plain::PlainEvents<TerminalEvent>& events() override { return events_; }
  posix::PosixFiles& files() override { return *files_; }
  TerminalInputSources& inputSources() override { return inputSources_; }
  posix::NotificationCentre& inputSourceNotifications() override {
    return inputSourceNotifications_;
  }
  plain::OnlyKeyboard& keyboard() override { return keyboard_; }
  posix::PollLoop& runLoop() override { return runLoop_; }
  TerminalSecureInput& secureInput() override { return secureInput_; }
  posix::ThreadQueues& serialQueues() override { return serialQueues_; }
  TerminalStatusBar& statusBar() override { return statusBar_; }
  TerminalLog& systemLog() override { return systemLog_; }
  TerminalTextContext& textContext() override { return textContext_; }
  posix::SettingsFile& userDefaults() override { return userDefaults_; }
  plain::NoWorkspace& workspace() override { return workspace_; }
  posix::NotificationCentre& workspaceNotifications() override { return workspaceNotifications_; }

 private:
  std::unique_ptr<posix::PosixFiles> files_ = posix::PosixFiles::ofUser();
  TerminalLog systemLog_;
  posix::MonotonicClock clock_;
  posix::PollLoop runLoop_{clock_};
  plain::FreeAccessibility accessibility_;
  posix::ProcessApplication application_{runLoop_};
  posix::DataDirectoryBundle bundle_;
  posix::ProcessEnvironment environment_;
  TerminalEventTaps eventTaps_;
  plain::PlainEvents<TerminalEvent> events_;
  TerminalInputSources inputSources_;
  posix::NotificationCentre inputSourceNotifications_;
  plain::OnlyKeyboard keyboard_{clock_, platform::PhysicalLayoutType::ansi};
  TerminalSecureInput secureInput_;
  posix::ThreadQueues serialQueues_;
  TerminalStatusBar statusBar_;
  TerminalTextContext textContext_;
  posix::SettingsFile userDefaults_;
  plain::NoWorkspace workspace_;
  posix::NotificationCentre workspaceNotifications_;
};

}  // namespace tessarok::terminal
