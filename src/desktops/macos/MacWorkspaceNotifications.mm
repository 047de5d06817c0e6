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

/// Nil for a name that the workspace does not announce.
NSNotificationName constantNamed(std::string_view name) {
  const std::pair<std::string_view, NSNotificationName> constants[] = {
      {"NSWorkspaceDidActivateApplicationNotification",
       NSWorkspaceDidActivateApplicationNotification},
      {"NSWorkspaceWillSleepNotification", NSWorkspaceWillSleepNotification},
      {"NSWorkspaceDidWakeNotification", NSWorkspaceDidWakeNotification},
      {"NSWorkspaceScreensDidSleepNotification", NSWorkspaceScreensDidSleepNotification},
      {"NSWorkspaceSessionDidResignActiveNotification",
       NSWorkspaceSessionDidResignActiveNotification},
      {"NSWorkspaceSessionDidBecomeActiveNotification",
       NSWorkspaceSessionDidBecomeActiveNotification},
  };
  for (const auto& [known, constant] : constants) {
    if (known == name) return constant;
  }
  return nil;
}

}  // namespace

std::unique_ptr<platform::Observation> MacWorkspaceNotifications::observe(
    std::string_view name, std::function<void()> work) {
  NSNotificationName constant = constantNamed(name);
  if (constant == nil) return nullptr;
  return std::make_unique<Observer>(constant, std::move(work));
}

}  // namespace tessarok::macos
