#include "desktops/macos/MacEvents.h"

#include "desktops/macos/MacEvent.h"
#include "desktops/macos/MacEventSource.h"
#include "desktops/macos/Own.h"

namespace tessarok::macos {

std::unique_ptr<platform::EventSource> MacEvents::createPrivateSource() {
  auto source = CfRef<CGEventSourceRef>::adopt(CGEventSourceCreate(kCGEventSourceStatePrivate));
  if (!source) return nullptr;
  return std::make_unique<MacEventSource>(std::move(source));
}

std::unique_ptr<platform::Event> MacEvents::createKeyboardEvent(platform::EventSource& source,
                                                                std::int64_t keyCode,
                                                                bool keyDown) {
  auto event = CfRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(
      own<MacEventSource>(source).get(), static_cast<CGKeyCode>(keyCode), keyDown));
  if (!event) return nullptr;
  return std::make_unique<MacEvent>(std::move(event));
}

}  // namespace tessarok::macos
