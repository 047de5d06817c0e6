#include "desktops/macos/MacWorkspaceNotifications.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace tessarok::macos {

namespace {

class Observer final : public platform::Observation {
 public:
  Observer(NSNotificationName name, std::function<void()> work) {
    token_ = [NSWorkspace.sharedWorkspace.notificationCenter addObserverForName:name
                                                                         object:nil
                                                                          queue:nil
                                                                     usingBlock:^(NSNotification*) {
                                                                       work();
                                                                     }];
  }
  ~Observer() override { [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:token_]; }

 private:
  id token_;
};

/// Nil for what the workspace does not announce.
NSNotificationName nameOf(platform::Notification notification) {
  switch (notification) {
    case platform::Notification::applicationActivated:
      return NSWorkspaceDidActivateApplicationNotification;
    case platform::Notification::willSleep:
      return NSWorkspaceWillSleepNotification;
    case platform::Notification::didWake:
      return NSWorkspaceDidWakeNotification;
    case platform::Notification::screensDidSleep:
      return NSWorkspaceScreensDidSleepNotification;
    case platform::Notification::sessionResignedActive:
      return NSWorkspaceSessionDidResignActiveNotification;
    case platform::Notification::sessionBecameActive:
      return NSWorkspaceSessionDidBecomeActiveNotification;
    default:
      return nil;
  }
}

}  // namespace

std::unique_ptr<platform::Observation> MacWorkspaceNotifications::observe(
    platform::Notification notification, std::function<void()> work) {
  NSNotificationName name = nameOf(notification);
  if (name == nil) return nullptr;
  return std::make_unique<Observer>(name, std::move(work));
}

}  // namespace tessarok::macos
