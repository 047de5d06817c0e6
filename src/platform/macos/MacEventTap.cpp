#include "platform/macos/MacEventTap.h"

#include "platform/macos/MacEvent.h"
#include "platform/macos/MacRunLoopSource.h"

namespace tessarok::macos {

namespace {

class Proxy final : public platform::EventTapProxy {
 public:
  explicit Proxy(CGEventTapProxy proxy) : proxy_(proxy) {}

  void post(const platform::Event& event) override {
    CGEventTapPostEvent(proxy_, static_cast<const MacEvent&>(event).get());
  }

 private:
  CGEventTapProxy proxy_;
};

}  // namespace

std::unique_ptr<MacEventTap> MacEventTap::create(CGEventMask mask,
                                                 platform::EventTapCallback callback,
                                                 void* userData) {
  std::unique_ptr<MacEventTap> tap(new MacEventTap(callback, userData));
  tap->port_ = CfRef<CFMachPortRef>::adopt(
      CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault, mask,
                       &MacEventTap::receive, tap.get()));
  if (!tap->port_) return nullptr;
  return tap;
}

MacEventTap::~MacEventTap() {
  // The run loop's source keeps the port alive, and with it a callback into this object.
  if (port_) invalidate();
}

bool MacEventTap::isEnabled() const {
  return CGEventTapIsEnabled(port_.get());
}

void MacEventTap::enable(bool enabled) {
  CGEventTapEnable(port_.get(), enabled);
}

void MacEventTap::invalidate() {
  CFMachPortInvalidate(port_.get());
}

std::unique_ptr<platform::RunLoopSource> MacEventTap::createRunLoopSource(int order) {
  auto source = CfRef<CFRunLoopSourceRef>::adopt(
      CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port_.get(), order));
  if (!source) return nullptr;
  return std::make_unique<MacRunLoopSource>(std::move(source));
}

CGEventRef MacEventTap::receive(CGEventTapProxy systemProxy, CGEventType type,
                                CGEventRef systemEvent, void* userInfo) {
  if (userInfo == nullptr) return systemEvent;
  const auto& tap = *static_cast<const MacEventTap*>(userInfo);
  Proxy proxy(systemProxy);
  const auto eventType = static_cast<platform::EventType>(type);
  // The system tells of a disabled tap without an event.
  if (systemEvent == nullptr) {
    tap.callback_(&proxy, eventType, nullptr, tap.userData_);
    return nullptr;
  }
  MacEvent event(CfRef<CGEventRef>::retain(systemEvent));
  const auto* delivered = tap.callback_(&proxy, eventType, &event, tap.userData_);
  // The event stays the system's; returning it gives no reference away.
  return delivered == nullptr ? nullptr : static_cast<const MacEvent*>(delivered)->get();
}

}  // namespace tessarok::macos
