#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "platform/Application.h"
#include "platform/Notifications.h"
#include "platform/StatusBar.h"
#include "platform/SystemLog.h"
#include "platform/Workspace.h"

namespace tessarok::macos {

/// The services of AppKit and Foundation, which speak Objective-C only. None is null.
struct ObjectiveCServices {
  std::unique_ptr<platform::Application> application;
  std::unique_ptr<platform::StatusBar> statusBar;
  std::unique_ptr<platform::SystemLog> systemLog;
  std::unique_ptr<platform::Workspace> workspace;
  std::unique_ptr<platform::Notifications> workspaceNotifications;
  std::filesystem::path homeDirectory;
  /// Absent when the system names none.
  std::optional<std::filesystem::path> applicationSupport;
};

[[nodiscard]] ObjectiveCServices makeObjectiveCServices();

}  // namespace tessarok::macos
