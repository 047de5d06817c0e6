#pragma once

#import <AppKit/AppKit.h>
#include <memory>

#include "app/AppDelegate.h"

/// What AppKit calls when the application has launched and when it ends.
@interface TessarokApplicationDelegate : NSObject <NSApplicationDelegate>
- (instancetype)initWithDelegate:(std::shared_ptr<tessarok::AppDelegate>)delegate;
@end
