#include "desktops/macos/MacEvent.h"

#include "desktops/macos/MacEventSource.h"
#include "desktops/macos/Own.h"
#include "platform/EventFlags.h"

namespace tessarok::macos {

namespace {

// Types and flags go through without translation.
namespace flags = platform::eventFlags;
using platform::EventType;

constexpr bool isSame(EventType type, CGEventType systemType) {
  return static_cast<std::uint32_t>(type) == static_cast<std::uint32_t>(systemType);
}

static_assert(isSame(EventType::leftMouseDown, kCGEventLeftMouseDown));
static_assert(isSame(EventType::rightMouseDown, kCGEventRightMouseDown));
static_assert(isSame(EventType::keyDown, kCGEventKeyDown));
static_assert(isSame(EventType::keyUp, kCGEventKeyUp));
static_assert(isSame(EventType::otherMouseDown, kCGEventOtherMouseDown));
static_assert(isSame(EventType::tapDisabledByTimeout, kCGEventTapDisabledByTimeout));
static_assert(isSame(EventType::tapDisabledByUserInput, kCGEventTapDisabledByUserInput));
static_assert(flags::capsLock == kCGEventFlagMaskAlphaShift);
static_assert(flags::shift == kCGEventFlagMaskShift);
static_assert(flags::control == kCGEventFlagMaskControl);
static_assert(flags::option == kCGEventFlagMaskAlternate);
static_assert(flags::command == kCGEventFlagMaskCommand);
static_assert(flags::function == kCGEventFlagMaskSecondaryFn);
static_assert(sizeof(char16_t) == sizeof(UniChar));

}  // namespace

std::int64_t MacEvent::keyCode() const {
  return CGEventGetIntegerValueField(get(), kCGKeyboardEventKeycode);
}

std::uint64_t MacEvent::flags() const {
  return CGEventGetFlags(get());
}

bool MacEvent::isAutorepeat() const {
  return CGEventGetIntegerValueField(get(), kCGKeyboardEventAutorepeat) != 0;
}

std::int64_t MacEvent::sourceUserData() const {
  return CGEventGetIntegerValueField(get(), kCGEventSourceUserData);
}

std::size_t MacEvent::unicodeString(std::span<char16_t> units) const {
  UniCharCount length = 0;
  CGEventKeyboardGetUnicodeString(get(), units.size(), &length,
                                  reinterpret_cast<UniChar*>(units.data()));
  return length;
}

std::unique_ptr<platform::Event> MacEvent::copy() const {
  auto copy = CfRef<CGEventRef>::adopt(CGEventCreateCopy(get()));
  if (!copy) return nullptr;
  return std::make_unique<MacEvent>(std::move(copy));
}

void MacEvent::setSource(platform::EventSource& source) {
  CGEventSetSource(get(), own<MacEventSource>(source).get());
}

void MacEvent::setType(platform::EventType type) {
  CGEventSetType(get(), static_cast<CGEventType>(type));
}

void MacEvent::setFlags(std::uint64_t flags) {
  CGEventSetFlags(get(), static_cast<CGEventFlags>(flags));
}

void MacEvent::setAutorepeat(bool autorepeat) {
  CGEventSetIntegerValueField(get(), kCGKeyboardEventAutorepeat, autorepeat ? 1 : 0);
}

void MacEvent::setSourceUserData(std::int64_t userData) {
  CGEventSetIntegerValueField(get(), kCGEventSourceUserData, userData);
}

void MacEvent::setUnicodeString(std::u16string_view units) {
  CGEventKeyboardSetUnicodeString(get(), units.size(),
                                  reinterpret_cast<const UniChar*>(units.data()));
}

}  // namespace tessarok::macos
