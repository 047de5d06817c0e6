#include "desktops/virtual/WorkspaceNotifications.h"

#include <utility>

namespace tessarok::virtualdesktop {

std::optional<platform::Notification> workspaceNotificationNamed(std::string_view name) {
  using platform::Notification;
  constexpr std::pair<std::string_view, Notification> kNames[] = {
      {"NSWorkspaceDidActivateApplicationNotification", Notification::applicationActivated},
      {"NSWorkspaceWillSleepNotification", Notification::willSleep},
      {"NSWorkspaceDidWakeNotification", Notification::didWake},
      {"NSWorkspaceScreensDidSleepNotification", Notification::screensDidSleep},
      {"NSWorkspaceSessionDidResignActiveNotification", Notification::sessionResignedActive},
      {"NSWorkspaceSessionDidBecomeActiveNotification", Notification::sessionBecameActive},
  };
  for (const auto& [known, notification] : kNames) {
    if (known == name) return notification;
  }
  return std::nullopt;
}

}  // namespace tessarok::virtualdesktop
