#pragma once

#include <CoreGraphics/CoreGraphics.h>

#ifdef __cplusplus
extern "C" {
#endif

extern const CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

#ifdef __cplusplus
}
#endif
