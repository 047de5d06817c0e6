#include "desktops/macos/MacApplication.h"

#import <AppKit/AppKit.h>

#include "desktops/macos/NsString.h"

namespace tessarok::macos {

namespace {

platform::RunningApplication describe(NSRunningApplication* application) {
  platform::RunningApplication described{.processIdentifier = application.processIdentifier,
                                         .launchDate = std::nullopt};
  // A nil date would answer as the reference date itself.
  if (NSDate* date = application.launchDate) {
    described.launchDate = date.timeIntervalSinceReferenceDate;
  }
  return described;
}

}  // namespace

void MacApplication::becomeAccessory() {
  [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

platform::RunningApplication MacApplication::self() {
  return describe(NSRunningApplication.currentApplication);
}

std::vector<platform::RunningApplication> MacApplication::running(std::string_view identifier) {
  NSArray<NSRunningApplication*>* applications =
      [NSRunningApplication runningApplicationsWithBundleIdentifier:nsString(identifier)];
  std::vector<platform::RunningApplication> described;
  for (NSUInteger i = 0; i < applications.count; ++i) {
    described.push_back(describe(applications[i]));
  }
  return described;
}

void MacApplication::terminate() {
  [NSApplication.sharedApplication terminate:nil];
}

}  // namespace tessarok::macos
