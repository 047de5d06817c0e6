#include "desktops/macos/ApplicationDelegate.h"

@implementation TessarokApplicationDelegate {
  std::shared_ptr<tessarok::AppDelegate> _delegate;
}

- (instancetype)initWithDelegate:(std::shared_ptr<tessarok::AppDelegate>)delegate {
  self = [super init];
  if (self != nil) _delegate = std::move(delegate);
  return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  _delegate->applicationDidFinishLaunching();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  _delegate->applicationWillTerminate();
}

@end
