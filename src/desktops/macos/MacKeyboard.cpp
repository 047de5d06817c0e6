#include "desktops/macos/MacKeyboard.h"

#include <Carbon/Carbon.h>

namespace tessarok::macos {

std::uint32_t MacKeyboard::type() {
  return LMGetKbdType();
}

platform::PhysicalLayoutType MacKeyboard::layoutType(std::uint32_t keyboardType) {
  using Type = platform::PhysicalLayoutType;
  switch (KBGetLayoutType(static_cast<SInt16>(keyboardType))) {
    case kKeyboardISO:
      return Type::iso;
    case kKeyboardJIS:
      return Type::jis;
    default:
      return Type::ansi;
  }
}

double MacKeyboard::secondsSinceLastKeyDown() {
  return CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateHIDSystemState, kCGEventKeyDown);
}

}  // namespace tessarok::macos
