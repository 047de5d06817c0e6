#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef double CGFloat;
typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventSource* CGEventSourceRef;
typedef struct __CGEventTapProxy* CGEventTapProxy;
typedef uint16_t CGKeyCode;
typedef uint64_t CGEventMask;
typedef uint64_t CGEventFlags;

enum CGEventType : uint32_t {
  kCGEventLeftMouseDown = 1,
  kCGEventRightMouseDown = 3,
  kCGEventKeyDown = 10,
  kCGEventKeyUp = 11,
  kCGEventOtherMouseDown = 25,
  kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
  kCGEventTapDisabledByUserInput = 0xFFFFFFFF
};
enum CGEventField : uint32_t {
  kCGKeyboardEventAutorepeat = 8,
  kCGKeyboardEventKeycode = 9,
  kCGEventSourceUserData = 42
};
enum : CGEventFlags {
  kCGEventFlagMaskAlphaShift = 0x10000,
  kCGEventFlagMaskShift = 0x20000,
  kCGEventFlagMaskControl = 0x40000,
  kCGEventFlagMaskAlternate = 0x80000,
  kCGEventFlagMaskCommand = 0x100000,
  kCGEventFlagMaskSecondaryFn = 0x800000
};
enum CGEventSourceStateID : int32_t {
  kCGEventSourceStatePrivate = -1,
  kCGEventSourceStateHIDSystemState = 1
};
enum CGEventTapLocation : uint32_t { kCGSessionEventTap = 1 };
enum CGEventTapPlacement : uint32_t { kCGHeadInsertEventTap = 0 };
enum CGEventTapOptions : uint32_t { kCGEventTapOptionDefault = 0 };

typedef CGEventRef (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                                         void* userInfo);

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask,
                               CGEventTapCallBack callback, void* userInfo);
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventTapIsEnabled(CFMachPortRef tap);
void CGEventTapPostEvent(CGEventTapProxy proxy, CGEventRef event);
bool CGPreflightPostEventAccess(void);

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID state);
CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID state, CGEventType type);

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode key, bool keyDown);
CGEventRef CGEventCreateCopy(CGEventRef event);
void CGEventSetSource(CGEventRef event, CGEventSourceRef source);
void CGEventSetType(CGEventRef event, CGEventType type);
CGEventFlags CGEventGetFlags(CGEventRef event);
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value);
void CGEventKeyboardGetUnicodeString(CGEventRef event, UniCharCount room, UniCharCount* length,
                                     UniChar* units);
void CGEventKeyboardSetUnicodeString(CGEventRef event, UniCharCount length, const UniChar* units);

#ifdef __cplusplus
}
#endif
