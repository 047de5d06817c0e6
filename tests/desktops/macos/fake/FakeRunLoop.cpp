// The main run loop and the distributed notifications that it brings.

#include <algorithm>

#include "tests/desktops/macos/fake/FakeSystem.h"

const CFRunLoopMode kCFRunLoopCommonModes = tessarok::fakemac::refTo<CFRunLoopMode>(
    new tessarok::fakemac::String("kCFRunLoopCommonModes", true));

namespace tessarok::fakemac {

namespace {

void requireMain(CFRunLoopRef loop, CFRunLoopMode mode) {
  if (loop != CFRunLoopGetMain()) misuse("a run loop other than the main one");
  if (mode != kCFRunLoopCommonModes) misuse("a mode other than the common ones");
}

}  // namespace

RunLoopSource::RunLoopSource(CFMachPortRef tapPort, CFIndex sourceOrder)
    : Object(Kind::runLoopSource), port(tapPort), order(sourceOrder) {
  CFRetain(port);
}

RunLoopSource::~RunLoopSource() {
  CFRelease(port);
}

}  // namespace tessarok::fakemac

using namespace tessarok::fakemac;

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port,
                                                 CFIndex order) {
  if (allocator != kCFAllocatorDefault) misuse("an unexpected allocator");
  if (std::exchange(fakeSystem().failsNextRunLoopSource, false)) return nullptr;
  if (!as<Tap>(port).isValid) return nullptr;
  fakeSystem().tapCalls.emplace_back("create source");
  return refTo<CFRunLoopSourceRef>(new RunLoopSource(port, order));
}

void CFMachPortInvalidate(CFMachPortRef port) {
  auto& tap = as<Tap>(port);
  fakeSystem().tapCalls.emplace_back("invalidate");
  tap.isValid = false;
  tap.isEnabled = false;
  fakeSystem().releaseWaitingKeys();
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  return fakeSystem().uptime;
}

CFRunLoopRef CFRunLoopGetMain() {
  static auto* const loop = new Object(Kind::runLoop, true);
  return refTo<CFRunLoopRef>(loop);
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  requireMain(loop, mode);
  CFRetain(source);
  fakeSystem().tapCalls.emplace_back("add source");
  fakeSystem().sources.push_back(&as<RunLoopSource>(source));
}

void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  requireMain(loop, mode);
  fakeSystem().tapCalls.emplace_back("remove source");
  auto& sources = fakeSystem().sources;
  const auto found = std::find(sources.begin(), sources.end(), &as<RunLoopSource>(source));
  if (found == sources.end()) misuse("the run loop has no such source");
  sources.erase(found);
  CFRelease(source);
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callback,
                                       CFRunLoopTimerContext* context) {
  if (allocator != kCFAllocatorDefault || flags != 0 || order != 0 || context->version != 0) {
    misuse("CFRunLoopTimerCreate was called with unexpected arguments");
  }
  auto* timer = new RunLoopTimer;
  timer->due = fireDate;
  timer->interval = interval;
  timer->callback = callback;
  timer->info = context->info;
  return refTo<CFRunLoopTimerRef>(timer);
}

void CFRunLoopTimerSetTolerance(CFRunLoopTimerRef timer, CFTimeInterval tolerance) {
  as<RunLoopTimer>(timer).tolerance = tolerance;
}

void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
  requireMain(loop, mode);
  CFRetain(timer);
  fakeSystem().timers.push_back(&as<RunLoopTimer>(timer));
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
  auto& timers = fakeSystem().timers;
  const auto found = std::find(timers.begin(), timers.end(), &as<RunLoopTimer>(timer));
  if (found == timers.end()) return;
  timers.erase(found);
  CFRelease(timer);
}

CFNotificationCenterRef CFNotificationCenterGetDistributedCenter() {
  static auto* const centre = new Object(Kind::notificationCentre, true);
  return fakeSystem().hasDistributedCentre ? refTo<CFNotificationCenterRef>(centre) : nullptr;
}

void CFNotificationCenterAddObserver(CFNotificationCenterRef centre, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name,
                                     const void* object,
                                     CFNotificationSuspensionBehavior suspension) {
  if (centre != CFNotificationCenterGetDistributedCenter() || object != nullptr ||
      suspension != CFNotificationSuspensionBehaviorDeliverImmediately) {
    misuse("CFNotificationCenterAddObserver was called with unexpected arguments");
  }
  // A null name would observe everything.
  static_cast<void>(as<String>(name));
  fakeSystem().observers.push_back({observer, callback, name});
}

void CFNotificationCenterRemoveObserver(CFNotificationCenterRef centre, const void* observer,
                                        CFNotificationName name, const void* object) {
  if (centre != CFNotificationCenterGetDistributedCenter() || object != nullptr) {
    misuse("CFNotificationCenterRemoveObserver was called with unexpected arguments");
  }
  auto& observers = fakeSystem().observers;
  const auto found = std::find_if(observers.begin(), observers.end(), [&](const auto& entry) {
    return entry.observer == observer && entry.name == name;
  });
  if (found == observers.end()) misuse("there is no such observer");
  observers.erase(found);
}
