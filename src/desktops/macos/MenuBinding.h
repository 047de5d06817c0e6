#pragma once

#import <AppKit/AppKit.h>
#include <memory>

#include "platform/Menu.h"

/// Shows a menu of the program as one of AppKit: reads it whenever it opens, and passes a chosen
/// item on. A submenu has a binding of its own.
@interface TessarokMenuBinding : NSObject <NSMenuDelegate>
- (instancetype)initWithMenu:(std::shared_ptr<tessarok::platform::Menu>)menu;
@property(readonly, strong) NSMenu* systemMenu;
@end
