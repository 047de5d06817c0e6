#pragma once

#include <Foundation/Foundation.h>

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(CGFloat)weight;
@end
@interface NSImage : NSObject
+ (instancetype)imageWithSystemSymbolName:(NSString*)name
                 accessibilityDescription:(NSString*)description;
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
- (void)setTemplate:(BOOL)isTemplate;
@end

typedef NSInteger NSControlStateValue;
static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;
@class NSMenu;
@interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)title
                       action:(SEL)action
                keyEquivalent:(NSString*)keyEquivalent;
@property(weak) id target;
@property(copy) NSString* title;
@property(getter=isEnabled) BOOL enabled;
@property NSControlStateValue state;
@property NSInteger tag;
@property(strong) NSMenu* submenu;
@end
@protocol NSMenuDelegate <NSObject>
@optional
- (void)menuNeedsUpdate:(NSMenu*)menu;
@end
@interface NSMenu : NSObject
@property(weak) id<NSMenuDelegate> delegate;
@property BOOL autoenablesItems;
- (void)addItem:(NSMenuItem*)item;
- (NSMenuItem*)itemAtIndex:(NSInteger)index;
- (NSInteger)indexOfItem:(NSMenuItem*)item;
@end

@interface NSStatusBarButton : NSObject
@property(strong) NSImage* image;
@property(copy) NSString* title;
@property(copy) NSString* toolTip;
@property BOOL appearsDisabled;
@end
@interface NSStatusItem : NSObject
@property(readonly, strong) NSStatusBarButton* button;
@property(strong) NSMenu* menu;
@end
@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

@interface NSRunningApplication : NSObject
@property(class, readonly, strong) NSRunningApplication* currentApplication;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier;
@property(readonly) int processIdentifier;
@property(readonly, copy) NSDate* launchDate;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
- (BOOL)openURL:(NSURL*)url;
@end

typedef NSInteger NSApplicationActivationPolicy;
enum : NSApplicationActivationPolicy { NSApplicationActivationPolicyAccessory = 1 };
@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (void)applicationWillTerminate:(NSNotification*)notification;
@end
@interface NSApplication : NSObject
@property(class, readonly, strong) NSApplication* sharedApplication;
@property(weak) id<NSApplicationDelegate> delegate;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)run;
- (void)terminate:(id)sender;
@end

static const CGFloat NSVariableStatusItemLength = -1;

extern "C" {
extern const CGFloat NSFontWeightRegular;
extern const NSNotificationName NSWorkspaceDidActivateApplicationNotification;
extern const NSNotificationName NSWorkspaceWillSleepNotification;
extern const NSNotificationName NSWorkspaceDidWakeNotification;
extern const NSNotificationName NSWorkspaceScreensDidSleepNotification;
extern const NSNotificationName NSWorkspaceSessionDidResignActiveNotification;
extern const NSNotificationName NSWorkspaceSessionDidBecomeActiveNotification;
}
