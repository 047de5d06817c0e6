#include "platform/macos/MacClock.h"

#import <Foundation/Foundation.h>

namespace tessarok::macos {

double MacClock::uptime() {
  return NSProcessInfo.processInfo.systemUptime;
}

}  // namespace tessarok::macos
