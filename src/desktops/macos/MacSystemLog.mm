#include "desktops/macos/MacSystemLog.h"

#import <Foundation/Foundation.h>

#include "desktops/macos/NsString.h"

namespace tessarok::macos {

void MacSystemLog::write(std::string_view message) {
  // Queues without a pool of their own write here too.
  @autoreleasepool {
    NSLog(@"%@", nsString(message));
  }
}

}  // namespace tessarok::macos
