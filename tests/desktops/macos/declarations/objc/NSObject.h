#pragma once

// Stands in for the system's header of this name, and for those that it includes, where the
// compiler brings none.

#if defined(__aarch64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;

@class NSString;

@protocol NSObject
- (Class)class;
- (BOOL)isKindOfClass:(Class)type;
- (BOOL)respondsToSelector:(SEL)selector;
#if !__has_feature(objc_arc)
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
#endif
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  // Every object begins with its class. Without this the compiler would put the first variable of
  // a subclass in its place.
  Class isa;
}
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
@end
