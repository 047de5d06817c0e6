// Quartz Event Services and the Accessibility permission.

#include <algorithm>
#include <limits>
#include <memory>

#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::fakemac {

namespace {

/// What a created event holds before the program sets its flags: the modifiers held just then.
constexpr CGEventFlags kHeldModifiers = 0x100 | kCGEventFlagMaskShift | kCGEventFlagMaskAlternate;

struct EventSource final : Object {
  explicit EventSource(CGEventSourceStateID sourceState)
      : Object(Kind::eventSource), state(sourceState) {}
  CGEventSourceStateID state;
};

bool isKey(CGEventType type) {
  return type == kCGEventKeyDown || type == kCGEventKeyUp;
}

bool isInMask(CGEventType type, CGEventMask mask) {
  return (mask & (CGEventMask{1} << type)) != 0;
}

Event& eventOf(CGEventRef event) {
  return as<Event>(event);
}

}  // namespace

Event::Event(const Event& other)
    : Object(Kind::event),
      type(other.type),
      keyCode(other.keyCode),
      autorepeat(other.autorepeat),
      userData(other.userData),
      flags(other.flags),
      text(other.text),
      sourceState(other.sourceState),
      posted(other.posted) {}

Tap::~Tap() {
  if (fakeSystem().tap == this) fakeSystem().tap = nullptr;
}

void FakeSystem::takePermission() {
  trusted = false;
  mayPost = false;
}

bool FakeSystem::reachesTap(const Event& event) const {
  if (tap == nullptr || !tap->isValid || !tap->isEnabled) return false;
  const bool isServed = std::any_of(sources.begin(), sources.end(), [this](const auto* source) {
    return source->port == refTo<CFMachPortRef>(tap);
  });
  return isServed && isInMask(event.type, tap->mask) &&
         (!isKey(event.type) || (!tap->isDeaf && (!secureInput || tapsSeePasswords)));
}

bool FakeSystem::isHeldUp(const Event& event) const {
  return !trusted && isKey(event.type) && reachesTap(event);
}

void FakeSystem::send(Event& event) {
  if (isHeldUp(event)) {
    waitingKeys.push_back(std::make_unique<Event>(event));
    return;
  }
  if (!reachesTap(event)) return deliver(event);
  const auto reference = refTo<CGEventRef>(&event);
  const auto returned = call(event.type, reference);
  if (event.references != 1) misuse("the callback kept, or gave away, a reference to the event");
  if (returned != nullptr && returned != reference) misuse("the callback returned another event");
  while (!postedEvents.empty()) {
    const std::unique_ptr<Event> posted(postedEvents.front());
    postedEvents.pop_front();
    deliver(*posted);
  }
  if (returned != nullptr) deliver(event);
}

void FakeSystem::releaseWaitingKeys() {
  if (!waitingKeys.empty() && isHeldUp(*waitingKeys.front())) return;
  for (const auto& key : std::exchange(waitingKeys, {}))
    deliver(*key);
}

void FakeSystem::deliver(const Event& event) const {
  if (onDelivered) onDelivered(event);
}

CGEventRef FakeSystem::call(CGEventType type, CGEventRef event) {
  char place = 0;
  proxy = reinterpret_cast<CGEventTapProxy>(&place);
  const auto returned = tap->callback(proxy, type, event, tap->userInfo);
  proxy = nullptr;
  return returned;
}

void FakeSystem::disableTap(CGEventType pseudoEvent, bool withEvent) {
  if (tap == nullptr || !tap->isValid) return;
  tap->isEnabled = false;
  Event event;
  event.type = pseudoEvent;
  const auto reference = withEvent ? refTo<CGEventRef>(&event) : nullptr;
  if (call(pseudoEvent, reference) != reference) misuse("the pseudo-event did not come back");
}

}  // namespace tessarok::fakemac

using namespace tessarok::fakemac;

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask,
                               CGEventTapCallBack callback, void* userInfo) {
  auto& system = fakeSystem();
  system.tapRequests.push_back({location, placement, options, mask, userInfo});
  system.tapCalls.emplace_back("create");
  constexpr CGEventMask kKeys =
      (CGEventMask{1} << kCGEventKeyDown) | (CGEventMask{1} << kCGEventKeyUp);
  if (!system.trusted) {
    mask &= ~kKeys;
    if (mask == 0 || system.untrustedTap == FakeSystem::UntrustedTap::refused) return nullptr;
  }
  if (std::exchange(system.failsNextTap, false)) return nullptr;
  if (system.tap != nullptr && system.tap->isValid) misuse("a second tap was created");
  system.tap = new Tap(callback, userInfo, mask);
  return refTo<CFMachPortRef>(system.tap);
}

void CGEventTapEnable(CFMachPortRef port, bool enable) {
  auto& tap = as<Tap>(port);
  fakeSystem().tapCalls.emplace_back(enable ? "enable" : "disable");
  if (!tap.isValid) misuse("an invalid tap was enabled or disabled");
  tap.isEnabled = enable;
  fakeSystem().releaseWaitingKeys();
}

bool CGEventTapIsEnabled(CFMachPortRef port) {
  if (!as<Tap>(port).isValid) misuse("an invalid tap was asked for");
  return as<Tap>(port).isEnabled;
}

void CGEventTapPostEvent(CGEventTapProxy proxy, CGEventRef event) {
  auto& system = fakeSystem();
  if (proxy == nullptr || proxy != system.proxy) misuse("the proxy of no running callback");
  auto* posted = new Event(eventOf(event));
  posted->posted = true;
  if (system.onPosted) system.onPosted(*posted);
  system.postedEvents.push_back(posted);
}

bool CGPreflightPostEventAccess() {
  return fakeSystem().mayPost;
}

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID state) {
  if (std::exchange(fakeSystem().failsNextSource, false)) return nullptr;
  return refTo<CGEventSourceRef>(new EventSource(state));
}

CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID state,
                                                      CGEventType type) {
  if (state != kCGEventSourceStateHIDSystemState || type != kCGEventKeyDown) {
    misuse("only the hardware's last key-down was expected to be asked for");
  }
  const auto& system = fakeSystem();
  if (!system.lastKeyDownAt) return std::numeric_limits<double>::infinity();
  return system.uptime - *system.lastKeyDownAt;
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode key, bool keyDown) {
  if (std::exchange(fakeSystem().failsNextEvent, false)) return nullptr;
  auto* event = new Event;
  event->type = keyDown ? kCGEventKeyDown : kCGEventKeyUp;
  event->keyCode = key;
  event->flags = kHeldModifiers;
  event->sourceState = as<EventSource>(source).state;
  return refTo<CGEventRef>(event);
}

CGEventRef CGEventCreateCopy(CGEventRef event) {
  if (std::exchange(fakeSystem().failsNextCopy, false)) return nullptr;
  return refTo<CGEventRef>(new Event(eventOf(event)));
}

void CGEventSetSource(CGEventRef event, CGEventSourceRef source) {
  eventOf(event).sourceState = as<EventSource>(source).state;
}

void CGEventSetType(CGEventRef event, CGEventType type) {
  eventOf(event).type = type;
}

CGEventFlags CGEventGetFlags(CGEventRef event) {
  return eventOf(event).flags;
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) {
  eventOf(event).flags = flags;
}

namespace {

std::int64_t& fieldOf(CGEventRef reference, CGEventField field) {
  auto& event = eventOf(reference);
  switch (field) {
    case kCGKeyboardEventAutorepeat:
      return event.autorepeat;
    case kCGKeyboardEventKeycode:
      return event.keyCode;
    case kCGEventSourceUserData:
      return event.userData;
  }
  misuse("an unknown field of an event");
}

}  // namespace

int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field) {
  return fieldOf(event, field);
}

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value) {
  fieldOf(event, field) = value;
}

void CGEventKeyboardGetUnicodeString(CGEventRef event, UniCharCount room, UniCharCount* length,
                                     UniChar* units) {
  const auto& text = eventOf(event).text;
  *length = text.size();
  std::copy_n(text.begin(), std::min<std::size_t>(room, text.size()), units);
}

void CGEventKeyboardSetUnicodeString(CGEventRef event, UniCharCount length, const UniChar* units) {
  // The system cuts longer texts short.
  if (length > 20) misuse("a text too long for an event");
  eventOf(event).text.assign(units, units + length);
}

::Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options) {
  const auto& entries = as<Dictionary>(options).entries;
  if (entries.size() != 1 || entries[0].first != kAXTrustedCheckOptionPrompt) {
    misuse("only the prompt option was expected");
  }
  fakeSystem().trustQuestions.push_back(
      CFBooleanGetValue(static_cast<CFBooleanRef>(entries[0].second)));
  return fakeSystem().trusted;
}
