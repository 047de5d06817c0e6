// Every constant and signature of the system that the macOS half uses. Nothing here runs: the file
// is checked when it compiles, on Linux against the project's declarations and on a Mac against
// the system's headers, so that both must agree with what is written down once more below.

#import <AppKit/AppKit.h>
#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <termios.h>
#include <time.h>
#include <type_traits>
#include <util.h>

namespace {

template <typename Value>
constexpr auto number(Value value) {
  return static_cast<long long>(value);
}

/// Whether a function or variable has exactly this type.
template <typename Actual, typename Expected>
constexpr bool is = std::is_same_v<Actual, Expected>;

/// An argument that nothing but exactly this type takes: a number would fit itself to any width.
template <typename Type>
struct Only {
  template <typename Actual, typename = std::enable_if_t<is<Actual, Type>>>
  operator Actual() const {  // NOLINT: to be converted is all that it is for
    return Actual();
  }
};

// Sizes of what crosses the border.
static_assert(is<UniChar, unsigned short> && sizeof(UniChar) == 2);
static_assert(is<UniCharCount, unsigned long> && is<CFIndex, long> && is<CFTypeID, unsigned long>);
static_assert(is<CFTypeRef, const void*> && is<Boolean, unsigned char>);
static_assert(sizeof(UInt8) == 1 && sizeof(UInt32) == 4 && sizeof(OSStatus) == 4);
static_assert(is<CFTimeInterval, double> && is<CFAbsoluteTime, double> && is<CGFloat, double>);
static_assert(is<CGKeyCode, uint16_t> && sizeof(CGEventMask) == 8 && sizeof(CGEventFlags) == 8);
static_assert(is<NSInteger, long> && is<NSUInteger, unsigned long> && is<NSTimeInterval, double>);

// Pseudo-terminals, for the command line.
static_assert(is<decltype(forkpty), pid_t(int*, char*, termios*, winsize*)>);

// Core Foundation.
static_assert(number(kCFStringEncodingUTF8) == 0x08000100);
static_assert(number(kCFNumberDoubleType) == 13);
static_assert(number(CFNotificationSuspensionBehaviorDeliverImmediately) == 4);
static_assert(is<decltype(kCFAllocatorDefault), const CFAllocatorRef>);
static_assert(is<decltype(kCFBooleanTrue), const CFBooleanRef>);
static_assert(is<decltype(kCFBooleanFalse), const CFBooleanRef>);
static_assert(is<decltype(kCFPreferencesCurrentApplication), const CFStringRef>);
static_assert(std::is_convertible_v<decltype(kCFRunLoopCommonModes), CFStringRef>);
static_assert(is<decltype(kCFTypeDictionaryKeyCallBacks), const CFDictionaryKeyCallBacks>);
static_assert(is<decltype(kCFTypeDictionaryValueCallBacks), const CFDictionaryValueCallBacks>);
static_assert(is<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(is<decltype(CFRelease), void(CFTypeRef)>);
static_assert(is<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);
static_assert(is<decltype(CFStringGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFStringCreateWithBytes),
                 CFStringRef(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding, Boolean)>);
static_assert(is<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(is<decltype(CFStringGetMaximumSizeForEncoding), CFIndex(CFIndex, CFStringEncoding)>);
static_assert(
    is<decltype(CFStringGetCString), Boolean(CFStringRef, char*, CFIndex, CFStringEncoding)>);
static_assert(is<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(is<decltype(CFArrayGetValueAtIndex), const void*(CFArrayRef, CFIndex)>);
static_assert(is<decltype(CFDataGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFDataGetLength), CFIndex(CFDataRef)>);
static_assert(is<decltype(CFDataGetBytePtr), const UInt8*(CFDataRef)>);
static_assert(is<decltype(CFBooleanGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);
static_assert(is<decltype(CFNumberGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void*)>);
static_assert(
    is<decltype(CFDictionaryCreate),
       CFDictionaryRef(CFAllocatorRef, const void**, const void**, CFIndex,
                       const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*)>);
static_assert(is<decltype(CFURLCopyPathExtension), CFStringRef(CFURLRef)>);
static_assert(
    is<decltype(CFURLGetFileSystemRepresentation), Boolean(CFURLRef, Boolean, UInt8*, CFIndex)>);
static_assert(is<decltype(CFBundleGetMainBundle), CFBundleRef()>);
static_assert(is<decltype(CFBundleGetIdentifier), CFStringRef(CFBundleRef)>);
static_assert(is<decltype(CFBundleCopyBundleURL), CFURLRef(CFBundleRef)>);
static_assert(is<decltype(CFBundleCopyResourceURL),
                 CFURLRef(CFBundleRef, CFStringRef, CFStringRef, CFStringRef)>);
static_assert(is<decltype(CFPreferencesCopyAppValue), CFPropertyListRef(CFStringRef, CFStringRef)>);
static_assert(
    is<decltype(CFPreferencesSetAppValue), void(CFStringRef, CFPropertyListRef, CFStringRef)>);
static_assert(is<decltype(CFPreferencesAppSynchronize), Boolean(CFStringRef)>);
static_assert(
    is<CFNotificationCallback,
       void (*)(CFNotificationCenterRef, void*, CFNotificationName, const void*, CFDictionaryRef)>);
static_assert(is<decltype(CFNotificationCenterGetDistributedCenter), CFNotificationCenterRef()>);
static_assert(is<decltype(CFNotificationCenterAddObserver),
                 void(CFNotificationCenterRef, const void*, CFNotificationCallback, CFStringRef,
                      const void*, CFNotificationSuspensionBehavior)>);
static_assert(is<decltype(CFNotificationCenterRemoveObserver),
                 void(CFNotificationCenterRef, const void*, CFNotificationName, const void*)>);
static_assert(is<decltype(CFMachPortCreateRunLoopSource),
                 CFRunLoopSourceRef(CFAllocatorRef, CFMachPortRef, CFIndex)>);
static_assert(is<decltype(CFMachPortInvalidate), void(CFMachPortRef)>);
static_assert(is<CFRunLoopTimerCallBack, void (*)(CFRunLoopTimerRef, void*)>);
static_assert(is<decltype(CFRunLoopTimerContext::info), void*>);
static_assert(is<decltype(CFAbsoluteTimeGetCurrent), CFAbsoluteTime()>);
static_assert(is<decltype(CFRunLoopGetMain), CFRunLoopRef()>);
static_assert(
    is<decltype(CFRunLoopAddSource), void(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode)>);
static_assert(
    is<decltype(CFRunLoopRemoveSource), void(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode)>);
static_assert(is<decltype(CFRunLoopTimerCreate),
                 CFRunLoopTimerRef(CFAllocatorRef, CFAbsoluteTime, CFTimeInterval, CFOptionFlags,
                                   CFIndex, CFRunLoopTimerCallBack, CFRunLoopTimerContext*)>);
static_assert(is<decltype(CFRunLoopTimerSetTolerance), void(CFRunLoopTimerRef, CFTimeInterval)>);
static_assert(
    is<decltype(CFRunLoopAddTimer), void(CFRunLoopRef, CFRunLoopTimerRef, CFRunLoopMode)>);
static_assert(is<decltype(CFRunLoopTimerInvalidate), void(CFRunLoopTimerRef)>);

// Quartz Event Services.
static_assert(number(kCGEventLeftMouseDown) == 1 && number(kCGEventRightMouseDown) == 3);
static_assert(number(kCGEventKeyDown) == 10 && number(kCGEventKeyUp) == 11);
static_assert(number(kCGEventOtherMouseDown) == 25);
static_assert(number(kCGEventTapDisabledByTimeout) == 0xFFFFFFFE);
static_assert(number(kCGEventTapDisabledByUserInput) == 0xFFFFFFFF);
static_assert(number(kCGKeyboardEventAutorepeat) == 8 && number(kCGKeyboardEventKeycode) == 9);
static_assert(number(kCGEventSourceUserData) == 42);
static_assert(number(kCGEventFlagMaskAlphaShift) == 0x10000);
static_assert(number(kCGEventFlagMaskShift) == 0x20000);
static_assert(number(kCGEventFlagMaskControl) == 0x40000);
static_assert(number(kCGEventFlagMaskAlternate) == 0x80000);
static_assert(number(kCGEventFlagMaskCommand) == 0x100000);
static_assert(number(kCGEventFlagMaskSecondaryFn) == 0x800000);
static_assert(number(kCGEventSourceStatePrivate) == -1);
static_assert(number(kCGEventSourceStateHIDSystemState) == 1);
static_assert(number(kCGSessionEventTap) == 1 && number(kCGHeadInsertEventTap) == 0);
static_assert(number(kCGEventTapOptionDefault) == 0);
static_assert(
    is<CGEventTapCallBack, CGEventRef (*)(CGEventTapProxy, CGEventType, CGEventRef, void*)>);
static_assert(is<decltype(CGEventTapCreate),
                 CFMachPortRef(CGEventTapLocation, CGEventTapPlacement, CGEventTapOptions,
                               CGEventMask, CGEventTapCallBack, void*)>);
static_assert(is<decltype(CGEventTapEnable), void(CFMachPortRef, bool)>);
static_assert(is<decltype(CGEventTapIsEnabled), bool(CFMachPortRef)>);
static_assert(is<decltype(CGEventTapPostEvent), void(CGEventTapProxy, CGEventRef)>);
static_assert(is<decltype(CGPreflightPostEventAccess), bool()>);
static_assert(is<decltype(CGEventSourceCreate), CGEventSourceRef(CGEventSourceStateID)>);
static_assert(is<decltype(CGEventSourceSecondsSinceLastEventType),
                 CFTimeInterval(CGEventSourceStateID, CGEventType)>);
static_assert(
    is<decltype(CGEventCreateKeyboardEvent), CGEventRef(CGEventSourceRef, CGKeyCode, bool)>);
static_assert(is<decltype(CGEventCreateCopy), CGEventRef(CGEventRef)>);
static_assert(is<decltype(CGEventSetSource), void(CGEventRef, CGEventSourceRef)>);
static_assert(is<decltype(CGEventSetType), void(CGEventRef, CGEventType)>);
static_assert(is<decltype(CGEventGetFlags), CGEventFlags(CGEventRef)>);
static_assert(is<decltype(CGEventSetFlags), void(CGEventRef, CGEventFlags)>);
static_assert(is<decltype(CGEventGetIntegerValueField), int64_t(CGEventRef, CGEventField)>);
static_assert(is<decltype(CGEventSetIntegerValueField), void(CGEventRef, CGEventField, int64_t)>);
static_assert(is<decltype(CGEventKeyboardGetUnicodeString),
                 void(CGEventRef, UniCharCount, UniCharCount*, UniChar*)>);
static_assert(
    is<decltype(CGEventKeyboardSetUnicodeString), void(CGEventRef, UniCharCount, const UniChar*)>);

// Accessibility, Carbon and HIToolbox.
static_assert(std::is_convertible_v<decltype(kAXTrustedCheckOptionPrompt), CFStringRef>);
static_assert(is<decltype(AXIsProcessTrustedWithOptions), Boolean(CFDictionaryRef)>);
static_assert(is<decltype(IsSecureEventInputEnabled), Boolean()>);
static_assert(is<decltype(kTISPropertyInputSourceCategory), const CFStringRef>);
static_assert(is<decltype(kTISPropertyInputSourceType), const CFStringRef>);
static_assert(is<decltype(kTISPropertyInputSourceIsSelectCapable), const CFStringRef>);
static_assert(is<decltype(kTISPropertyInputSourceID), const CFStringRef>);
static_assert(is<decltype(kTISPropertyUnicodeKeyLayoutData), const CFStringRef>);
static_assert(is<decltype(kTISCategoryKeyboardInputSource), const CFStringRef>);
static_assert(is<decltype(kTISTypeKeyboardLayout), const CFStringRef>);
static_assert(is<decltype(kTISNotifySelectedKeyboardInputSourceChanged), const CFStringRef>);
static_assert(is<decltype(kTISNotifyEnabledKeyboardInputSourcesChanged), const CFStringRef>);
static_assert(is<decltype(TISInputSourceGetTypeID), CFTypeID()>);
static_assert(is<decltype(TISCreateInputSourceList), CFArrayRef(CFDictionaryRef, Boolean)>);
static_assert(is<decltype(TISCopyCurrentKeyboardInputSource), TISInputSourceRef()>);
static_assert(is<decltype(TISGetInputSourceProperty), void*(TISInputSourceRef, CFStringRef)>);
static_assert(is<decltype(TISSelectInputSource), OSStatus(TISInputSourceRef)>);
static_assert(number(kUCKeyActionDisplay) == 3 && number(kUCKeyTranslateNoDeadKeysMask) == 1);
static_assert(is<decltype(UCKeyTranslate),
                 OSStatus(const UCKeyboardLayout*, UInt16, UInt16, UInt32, UInt32, OptionBits,
                          UInt32*, UniCharCount, UniCharCount*, UniChar*)>);
static_assert(number(kKeyboardJIS) == 0x4A495320 && number(kKeyboardANSI) == 0x414E5349);
static_assert(number(kKeyboardISO) == 0x49534F20);
static_assert(is<decltype(KBGetLayoutType), PhysicalKeyboardLayoutType(SInt16)>);
static_assert(is<decltype(LMGetKbdType), UInt8()>);

// Time.
static_assert(number(CLOCK_UPTIME_RAW) == 8 && sizeof(clockid_t) == 4);
static_assert(sizeof(clock_gettime_nsec_np(CLOCK_UPTIME_RAW)) == 8);

// Foundation and AppKit.
static_assert(number(NSUTF8StringEncoding) == 4);
static_assert(number(NSApplicationSupportDirectory) == 14 && number(NSUserDomainMask) == 1);
static_assert(number(NSApplicationActivationPolicyAccessory) == 1);
static_assert(number(NSActivityUserInitiatedAllowingIdleSystemSleep) == 0xEFFFFF);
static_assert(is<NSActivityOptions, uint64_t> && is<NSStringEncoding, NSUInteger>);
static_assert(sizeof(NSSearchPathDirectory) == 8 && sizeof(NSSearchPathDomainMask) == 8);
static_assert(sizeof(NSApplicationActivationPolicy) == 8 && is<NSControlStateValue, NSInteger>);
static_assert(NSControlStateValueOff == 0 && NSControlStateValueOn == 1);
static_assert(is<decltype(NSVariableStatusItemLength), const CGFloat>);
static_assert(is<decltype(NSFontWeightRegular), const CGFloat>);

}  // namespace

/// Never called: every method with the types of its arguments and of what it returns.
@interface TessarokDeclarations : NSObject <NSApplicationDelegate, NSMenuDelegate>
@end

@implementation TessarokDeclarations

- (void)foundation {
  NSString* text = [[NSString alloc] initWithBytes:static_cast<const void*>("")
                                            length:Only<NSUInteger>()
                                          encoding:Only<NSStringEncoding>()];
  [[maybe_unused]] const char* path = text.fileSystemRepresentation;
  NSURL* url = [NSURL URLWithString:text];
  url = [NSURL fileURLWithPath:text];
  path = url.fileSystemRepresentation;
  NSArray<NSURL*>* folders =
      [NSFileManager.defaultManager URLsForDirectory:Only<NSSearchPathDirectory>()
                                           inDomains:Only<NSSearchPathDomainMask>()];
  url = folders.firstObject;
  NSMutableArray<NSURL*>* list = [[NSMutableArray alloc] init];
  [list addObject:url];
  static_assert(is<decltype([list count]), NSUInteger>);
  url = [folders objectAtIndexedSubscript:Only<NSUInteger>()];
  NSDate* date = NSRunningApplication.currentApplication.launchDate;
  static_assert(is<decltype([date timeIntervalSinceReferenceDate]), NSTimeInterval>);
  [[maybe_unused]] id<NSObject> token =
      [NSProcessInfo.processInfo beginActivityWithOptions:Only<NSActivityOptions>() reason:text];
  text = NSHomeDirectory();
  NSLog(@"%@", text);
}

- (void)applications {
  NSApplication* application = NSApplication.sharedApplication;
  application.delegate = self;
  static_assert(
      is<decltype([application setActivationPolicy:Only<NSApplicationActivationPolicy>()]), BOOL>);
  [application run];
  [application terminate:nil];
  NSArray<NSRunningApplication*>* running =
      [NSRunningApplication runningApplicationsWithBundleIdentifier:@"app.tessarok"];
  static_assert(is<decltype([running[0] processIdentifier]), int>);
}

- (void)workspace {
  NSWorkspace* workspace = NSWorkspace.sharedWorkspace;
  static_assert(is<decltype([workspace openURL:[NSURL fileURLWithPath:@"/"]]), BOOL>);
  NSNotificationCenter* centre = workspace.notificationCenter;
  NSNotificationName names[] = {NSWorkspaceDidActivateApplicationNotification,
                                NSWorkspaceWillSleepNotification,
                                NSWorkspaceDidWakeNotification,
                                NSWorkspaceScreensDidSleepNotification,
                                NSWorkspaceSessionDidResignActiveNotification,
                                NSWorkspaceSessionDidBecomeActiveNotification};
  id token = [centre addObserverForName:names[0]
                                 object:nil
                                  queue:nil
                             usingBlock:^(NSNotification*){
                             }];
  [centre removeObserver:token];
}

- (void)statusBar {
  NSStatusItem* item = [NSStatusBar.systemStatusBar statusItemWithLength:Only<CGFloat>()];
  NSStatusBarButton* button = item.button;
  NSImage* image = [NSImage imageWithSystemSymbolName:@"keyboard"
                             accessibilityDescription:@"Tessarok"];
  NSImageSymbolConfiguration* configuration =
      [NSImageSymbolConfiguration configurationWithPointSize:Only<CGFloat>()
                                                      weight:Only<CGFloat>()];
  image = [image imageWithSymbolConfiguration:configuration];
  [image setTemplate:Only<BOOL>()];
  button.image = image;
  button.title = @"";
  button.toolTip = @"";
  [button setAppearsDisabled:Only<BOOL>()];
  item.menu = [[NSMenu alloc] init];
  [NSStatusBar.systemStatusBar removeStatusItem:item];
}

- (void)menus {
  NSMenu* menu = [[NSMenu alloc] init];
  [menu setAutoenablesItems:Only<BOOL>()];
  menu.delegate = self;
  NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:@"" action:nullptr keyEquivalent:@"q"];
  item.target = self;
  item.title = @"";
  [item setEnabled:Only<BOOL>()];
  [item setState:Only<NSControlStateValue>()];
  [item setTag:Only<NSInteger>()];
  item.submenu = menu;
  [menu addItem:item];
  [menu addItem:[NSMenuItem separatorItem]];
  item = [menu itemAtIndex:Only<NSInteger>()];
  static_assert(is<decltype([menu indexOfItem:item]), NSInteger>);
}

@end
