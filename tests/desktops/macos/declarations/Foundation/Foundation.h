#pragma once

#include <CoreGraphics/CoreGraphics.h>

#if defined(__aarch64__)
typedef bool BOOL;
#define YES true
#define NO false
#else
typedef signed char BOOL;
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#endif
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };
typedef struct _NSZone NSZone;

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
@end

@protocol NSObject
@end

@interface NSString : NSObject
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding;
@property(readonly) const char* fileSystemRepresentation;
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
@property(readonly) const char* fileSystemRepresentation;
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

@interface NSProcessInfo : NSObject
@property(class, readonly) NSProcessInfo* processInfo;
@property(readonly) NSTimeInterval systemUptime;
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
