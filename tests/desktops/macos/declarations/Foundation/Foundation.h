#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <objc/NSObject.h>

// The text lives no longer than its owner: the compiler keeps that alive as long as it is used.
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))

typedef double NSTimeInterval;
typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };
typedef struct _NSZone NSZone;

@interface NSString : NSObject
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding;
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@end
@interface NSConstantString : NSString
@end

@interface NSArray<ObjectType> : NSObject
@property(readonly) NSUInteger count;
@property(readonly) ObjectType firstObject;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
@end
@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)object;
@end

@interface NSDate : NSObject
@property(readonly) NSTimeInterval timeIntervalSinceReferenceDate;
@end

@interface NSURL : NSObject
+ (instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@end

typedef NSUInteger NSSearchPathDirectory;
enum : NSSearchPathDirectory { NSApplicationSupportDirectory = 14 };
typedef NSUInteger NSSearchPathDomainMask;
enum : NSSearchPathDomainMask { NSUserDomainMask = 1 };
@interface NSFileManager : NSObject
@property(class, readonly) NSFileManager* defaultManager;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domains;
@end

enum : uint64_t { NSActivityUserInitiatedAllowingIdleSystemSleep = 0xEFFFFF };
typedef uint64_t NSActivityOptions;
@interface NSProcessInfo : NSObject
@property(class, readonly) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
@end

typedef NSString* NSNotificationName;
@interface NSNotification : NSObject
@end
@interface NSOperationQueue : NSObject
@end
@interface NSNotificationCenter : NSObject
- (id)addObserverForName:(NSNotificationName)name
                  object:(id)object
                   queue:(NSOperationQueue*)queue
              usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

extern "C" {
NSString* NSHomeDirectory(void);
void NSLog(NSString* format, ...) __attribute__((format(__NSString__, 1, 2)));
}
