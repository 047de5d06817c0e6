#include "desktops/macos/MacClock.h"

#import <Foundation/Foundation.h>

namespace tessarok::macos {

double MacClock::uptime() {
  // Asked for at every key, mostly where no pool of AppKit's is emptied soon.
  @autoreleasepool {
    return NSProcessInfo.processInfo.systemUptime;
  }
}

}  // namespace tessarok::macos
