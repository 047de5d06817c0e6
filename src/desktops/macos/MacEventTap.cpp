#include "desktops/macos/MacEventTap.h"

#include <utility>

#include "desktops/macos/MacEvent.h"
#include "desktops/macos/MacRunLoopSource.h"

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
  callback_ = callback;
  auto port = CfRef<CFMachPortRef>::adopt(
      CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault, mask,
                       &MacEventTap::receive, userData));
  if (!port) return nullptr;
  return std::unique_ptr<MacEventTap>(new MacEventTap(std::move(port)));
}

MacEventTap::~MacEventTap() {
  // The run loop's source keeps the port alive, and with it calls for the user data.
  if (isValid_) CFMachPortInvalidate(port_.get());
}

bool MacEventTap::isEnabled() const {
  return CGEventTapIsEnabled(port_.get());
}

void MacEventTap::enable(bool enabled) {
  CGEventTapEnable(port_.get(), enabled);
}

void MacEventTap::invalidate() {
  isValid_ = false;
  CFMachPortInvalidate(port_.get());
}

std::unique_ptr<platform::RunLoopSource> MacEventTap::createRunLoopSource(int order) {
  auto source = CfRef<CFRunLoopSourceRef>::adopt(
      CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port_.get(), order));
  if (!source) return nullptr;
  return std::make_unique<MacRunLoopSource>(std::move(source));
}

CGEventRef MacEventTap::receive(CGEventTapProxy systemProxy, CGEventType type,
                                CGEventRef systemEvent, void* userData) {
  if (userData == nullptr) return systemEvent;
  Proxy proxy(systemProxy);
  const auto eventType = static_cast<platform::EventType>(type);
  // The system tells of a disabled tap without an event.
  if (systemEvent == nullptr) {
    callback_(&proxy, eventType, nullptr, userData);
    return nullptr;
  }
  MacEvent event(CfRef<CGEventRef>::retain(systemEvent));
  const auto* delivered = callback_(&proxy, eventType, &event, userData);
  // The event stays the system's; returning it gives no reference away.
  return delivered == nullptr ? nullptr : static_cast<const MacEvent*>(delivered)->get();
}

}  // namespace tessarok::macos
