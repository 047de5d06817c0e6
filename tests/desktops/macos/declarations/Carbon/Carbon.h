#pragma once

#include <ApplicationServices/ApplicationServices.h>

#ifdef __cplusplus
extern "C" {
#endif

Boolean IsSecureEventInputEnabled(void);

typedef struct __TISInputSource* TISInputSourceRef;
extern const CFStringRef kTISPropertyInputSourceCategory;
extern const CFStringRef kTISPropertyInputSourceType;
extern const CFStringRef kTISPropertyInputSourceIsSelectCapable;
extern const CFStringRef kTISPropertyInputSourceID;
extern const CFStringRef kTISPropertyUnicodeKeyLayoutData;
extern const CFStringRef kTISCategoryKeyboardInputSource;
extern const CFStringRef kTISTypeKeyboardLayout;
extern const CFStringRef kTISNotifySelectedKeyboardInputSourceChanged;
extern const CFStringRef kTISNotifyEnabledKeyboardInputSourcesChanged;
CFTypeID TISInputSourceGetTypeID(void);
CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, Boolean includeAllInstalled);
TISInputSourceRef TISCopyCurrentKeyboardInputSource(void);
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);
OSStatus TISSelectInputSource(TISInputSourceRef source);

typedef struct UCKeyboardLayout UCKeyboardLayout;
enum { kUCKeyActionDisplay = 3 };
enum { kUCKeyTranslateNoDeadKeysMask = 1 };
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifierKeyState, UInt32 keyboardType, OptionBits options,
                        UInt32* deadKeyState, UniCharCount room, UniCharCount* length,
                        UniChar* units);

typedef UInt32 PhysicalKeyboardLayoutType;
enum { kKeyboardJIS = 0x4A495320, kKeyboardANSI = 0x414E5349, kKeyboardISO = 0x49534F20 };
PhysicalKeyboardLayoutType KBGetLayoutType(SInt16 keyboardType);
UInt8 LMGetKbdType(void);

#ifdef __cplusplus
}
#endif
