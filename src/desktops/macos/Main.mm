// The program of Tessarok.app.

#import <AppKit/AppKit.h>
#include <memory>

#include "desktops/macos/ApplicationDelegate.h"
#include "desktops/macos/MacDesktop.h"
#include "desktops/posix/WriteSignals.h"

namespace {

// The application holds its delegate weakly, and both must live until the process ends: AppKit
// ends it without returning from the event loop.
NSApplication* application = nil;
TessarokApplicationDelegate* applicationDelegate = nil;

}  // namespace

int main() {
  tessarok::posix::ignoreWriteSignals();
  @autoreleasepool {
    // Never destroyed, so that a late call of the main queue still finds it.
    static auto* const desktop =
        new tessarok::macos::MacDesktop(tessarok::macos::makeObjectiveCServices());
    tessarok::platform::setDesktop(*desktop);
    application = NSApplication.sharedApplication;
    applicationDelegate = [[TessarokApplicationDelegate alloc]
        initWithDelegate:std::make_shared<tessarok::AppDelegate>()];
    application.delegate = applicationDelegate;
    [application run];
  }
  return 0;
}
