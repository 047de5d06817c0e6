#include "desktops/macos/MacEventTap.h"

#include <utility>

#include "desktops/macos/MacAccessibility.h"
#include "desktops/macos/MacEvent.h"
#include "desktops/macos/MacRunLoopSource.h"
#include "desktops/macos/Own.h"

namespace tessarok::macos {

namespace {

class Proxy final : public platform::EventTapProxy {
 public:
  explicit Proxy(CGEventTapProxy proxy) : proxy_(proxy) {}

  void post(const platform::Event& event) override {
    CGEventTapPostEvent(proxy_, own<const MacEvent>(event).get());
  }

 private:
  CGEventTapProxy proxy_;
};

bool hasPermission() {
  return MacAccessibility().isProcessTrusted(false);
}

}  // namespace

std::unique_ptr<MacEventTap> MacEventTap::create(CGEventMask mask,
                                                 platform::EventTapCallback callback,
                                                 void* userData) {
  if (!hasPermission()) return nullptr;
  std::unique_ptr<MacEventTap> tap(new MacEventTap(callback, userData));
  tap->port_ = CfRef<CFMachPortRef>::adopt(
      CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault, mask,
                       &MacEventTap::receive, &tap->context_));
  if (!tap->port_) return nullptr;
  tap->isValid_ = true;
  return tap;
}

MacEventTap::MacEventTap(platform::EventTapCallback callback, void* userData)
    : context_{callback, userData}, permissionNotification_([this] { checkPermission(); }) {}

MacEventTap::~MacEventTap() {
  // The run loop's source keeps the port alive, and with it calls with the context.
  giveUp();
}

bool MacEventTap::checkPermission() const {
  if (isValid_ && !hasPermission()) giveUp();
  return isValid_;
}

void MacEventTap::giveUp() const {
  if (std::exchange(isValid_, false)) CFMachPortInvalidate(port_.get());
}

bool MacEventTap::isEnabled() const {
  return checkPermission() && CGEventTapIsEnabled(port_.get());
}

void MacEventTap::enable(bool enabled) {
  // The system disables a tap that lost the permission, and its owner enables a disabled tap.
  if (enabled ? checkPermission() : isValid_) CGEventTapEnable(port_.get(), enabled);
}

void MacEventTap::invalidate() {
  giveUp();
}

std::unique_ptr<platform::RunLoopSource> MacEventTap::createRunLoopSource(int order) {
  auto source = CfRef<CFRunLoopSourceRef>::adopt(
      CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port_.get(), order));
  if (!source) return nullptr;
  return std::make_unique<MacRunLoopSource>(std::move(source));
}

CGEventRef MacEventTap::receive(CGEventTapProxy systemProxy, CGEventType type,
                                CGEventRef systemEvent, void* context) {
  if (context == nullptr) return systemEvent;
  // A copy, because the call may destroy the tap.
  const auto [callback, userData] = *static_cast<const Context*>(context);
  Proxy proxy(systemProxy);
  const auto eventType = static_cast<platform::EventType>(type);
  // The system tells of a disabled tap without an event.
  if (systemEvent == nullptr) {
    callback(&proxy, eventType, nullptr, userData);
    return nullptr;
  }
  MacEvent event(CfRef<CGEventRef>::retain(systemEvent));
  const auto* delivered = callback(&proxy, eventType, &event, userData);
  // The event stays the system's; returning it gives no reference away.
  return delivered == nullptr ? nullptr : own<const MacEvent>(*delivered).get();
}

}  // namespace tessarok::macos
