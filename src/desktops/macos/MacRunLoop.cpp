#include "desktops/macos/MacRunLoop.h"

#include <CoreFoundation/CoreFoundation.h>
#include <cmath>
#include <dispatch/dispatch.h>
#include <utility>

#include "desktops/macos/CfRef.h"
#include "desktops/macos/DispatchWork.h"
#include "desktops/macos/MacRunLoopSource.h"
#include "desktops/macos/Own.h"

namespace tessarok::macos {

namespace {

using Work = std::function<void()>;

class RepeatingTimer final : public platform::Timer {
 public:
  RepeatingTimer(double interval, double tolerance, Work work) : work_(std::move(work)) {
    CFRunLoopTimerContext context{};
    context.info = this;
    timer_ = CfRef<CFRunLoopTimerRef>::adopt(
        CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + interval, interval,
                             0, 0, &RepeatingTimer::fire, &context));
    CFRunLoopTimerSetTolerance(timer_.get(), tolerance);
    // The common modes include the one in which a menu is tracked.
    CFRunLoopAddTimer(CFRunLoopGetMain(), timer_.get(), kCFRunLoopCommonModes);
  }
  ~RepeatingTimer() override { CFRunLoopTimerInvalidate(timer_.get()); }

 private:
  static void fire(CFRunLoopTimerRef, void* info) {
    // A copy, because the work may destroy the timer.
    const auto work = static_cast<RepeatingTimer*>(info)->work_;
    work();
  }

  Work work_;
  CfRef<CFRunLoopTimerRef> timer_;
};

CFRunLoopSourceRef sourceOf(platform::RunLoopSource& source) {
  return own<MacRunLoopSource>(source).get();
}

}  // namespace

void MacRunLoop::async(Work work) {
  dispatch_async_f(dispatch_get_main_queue(), DispatchWork::context(std::move(work)),
                   &DispatchWork::call);
}

void MacRunLoop::after(double seconds, Work work) {
  const auto delay = std::llround(seconds * static_cast<double>(NSEC_PER_SEC));
  dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, delay), dispatch_get_main_queue(),
                   DispatchWork::context(std::move(work)), &DispatchWork::call);
}

std::unique_ptr<platform::Timer> MacRunLoop::repeating(double interval, double tolerance,
                                                       Work work) {
  return std::make_unique<RepeatingTimer>(interval, tolerance, std::move(work));
}

void MacRunLoop::add(platform::RunLoopSource& source) {
  CFRunLoopAddSource(CFRunLoopGetMain(), sourceOf(source), kCFRunLoopCommonModes);
}

void MacRunLoop::remove(platform::RunLoopSource& source) {
  CFRunLoopRemoveSource(CFRunLoopGetMain(), sourceOf(source), kCFRunLoopCommonModes);
}

}  // namespace tessarok::macos
