// The root class, compiled without automatic reference counting: it is what the counting is made
// of.

#import <Foundation/Foundation.h>

#include "tests/desktops/macos/objc/Runtime.h"

extern "C" {
id objc_retain(id object);
void objc_release(id object);
id objc_autorelease(id object);
}

@implementation NSObject

+ (instancetype)alloc {
  return static_cast<id>(fakeobjc_create(static_cast<const void*>(self)));
}
+ (Class)class {
  return self;
}
- (instancetype)init {
  return self;
}
- (void)dealloc {
  fakeobjc_dispose(self);
}
- (Class)class {
  return reinterpret_cast<Class>(const_cast<void*>(fakeobjc_classOf(self)));
}
- (BOOL)isKindOfClass:(Class)type {
  return fakeobjc_isKind(self, static_cast<const void*>(type));
}
- (BOOL)respondsToSelector:(SEL)selector {
  return fakeobjc_responds(self, reinterpret_cast<const char*>(selector));
}
- (instancetype)retain {
  return objc_retain(self);
}
- (oneway void)release {
  objc_release(self);
}
- (instancetype)autorelease {
  return objc_autorelease(self);
}

@end
