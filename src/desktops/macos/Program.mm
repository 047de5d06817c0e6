#include "desktops/macos/Program.h"

#import <AppKit/AppKit.h>
#include <memory>

#include "desktops/macos/ApplicationDelegate.h"
#include "desktops/macos/MacDesktop.h"
#include "desktops/macos/TerminationSignals.h"

namespace tessarok::macos {

namespace {

// The application holds its delegate weakly, and all of these must live until the process ends:
// AppKit ends it without returning from the event loop.
NSApplication* application = nil;
TessarokApplicationDelegate* applicationDelegate = nil;
id<NSObject> activity = nil;

/// The system slows the timers and the processor of a program down whose windows nobody sees, and
/// this one has none; every key of the person waits for it. A Mac that nobody uses still sleeps.
id<NSObject> beginActivity() {
  return [NSProcessInfo.processInfo
      beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                        reason:@"Every key passes through this program"];
}

}  // namespace

void runProgram() {
  @autoreleasepool {
    // Never destroyed, so that a late call of the main queue still finds it.
    static auto* const desktop = new MacDesktop(makeObjectiveCServices());
    platform::setDesktop(*desktop);
    application = NSApplication.sharedApplication;
    applicationDelegate =
        [[TessarokApplicationDelegate alloc] initWithDelegate:std::make_shared<AppDelegate>()];
    application.delegate = applicationDelegate;
    activity = beginActivity();
    static const auto* const signals =
        new TerminationSignals([] { desktop->application().terminate(); });
    static_cast<void>(signals);
    [application run];
  }
}

}  // namespace tessarok::macos
