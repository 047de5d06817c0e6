// The system's constants. This file does not include their declarations, because here they vary.

#include "tests/desktops/macos/fake/FakeConstants.h"

#include "tests/desktops/macos/fake/FakeObject.h"

namespace {

const void* constantString(const char* text) {
  return new tessarok::fakemac::String(text, true);
}

}  // namespace

// NOLINTBEGIN: the names are the system's.
extern "C" {
const void* kAXTrustedCheckOptionPrompt = constantString("AXTrustedCheckOptionPrompt");
const void* kTISPropertyInputSourceCategory = constantString("TISPropertyInputSourceCategory");
const void* kTISPropertyInputSourceType = constantString("TISPropertyInputSourceType");
const void* kTISPropertyInputSourceIsSelectCapable =
    constantString("TISPropertyInputSourceIsSelectCapable");
const void* kTISPropertyInputSourceID = constantString("TISPropertyInputSourceID");
const void* kTISPropertyUnicodeKeyLayoutData = constantString("TISPropertyUnicodeKeyLayoutData");
const void* kTISCategoryKeyboardInputSource = constantString("TISCategoryKeyboardInputSource");
const void* kTISTypeKeyboardLayout = constantString("TISTypeKeyboardLayout");
const void* kTISNotifySelectedKeyboardInputSourceChanged =
    constantString("com.apple.Carbon.TISNotifySelectedKeyboardInputSourceChanged");
const void* kTISNotifyEnabledKeyboardInputSourcesChanged =
    constantString("com.apple.Carbon.TISNotifyEnabledKeyboardInputSourcesChanged");
}
// NOLINTEND

namespace tessarok::fakemac {

void forgetSelectedChangedConstant() {
  kTISNotifySelectedKeyboardInputSourceChanged = nullptr;
}

void forgetKeyboardCategoryConstant() {
  kTISCategoryKeyboardInputSource = nullptr;
}

}  // namespace tessarok::fakemac
