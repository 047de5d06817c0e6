#include "desktops/macos/MacAccessibility.h"

#include <ApplicationServices/ApplicationServices.h>

#include "desktops/macos/CfRef.h"

namespace tessarok::macos {

bool MacAccessibility::isProcessTrusted(bool prompt) {
  const void* keys[] = {kAXTrustedCheckOptionPrompt};
  const void* values[] = {prompt ? kCFBooleanTrue : kCFBooleanFalse};
  const auto options = CfRef<CFDictionaryRef>::adopt(
      CFDictionaryCreate(kCFAllocatorDefault, keys, values, 1, &kCFTypeDictionaryKeyCallBacks,
                         &kCFTypeDictionaryValueCallBacks));
  return AXIsProcessTrustedWithOptions(options.get());
}

}  // namespace tessarok::macos
