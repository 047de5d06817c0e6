#pragma once

#import <Foundation/Foundation.h>
#include <string_view>

namespace tessarok::macos {

/// Nil for text that is not UTF-8.
inline NSString* nsString(std::string_view text) {
  return [[NSString alloc] initWithBytes:text.data()
                                  length:text.size()
                                encoding:NSUTF8StringEncoding];
}

}  // namespace tessarok::macos
