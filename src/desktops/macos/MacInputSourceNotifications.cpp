#include "desktops/macos/MacInputSourceNotifications.h"

#include <Carbon/Carbon.h>
#include <utility>

#include "desktops/macos/DistributedObserver.h"

namespace tessarok::macos {

namespace {

/// Null for a name that the system does not know.
CFStringRef constantNamed(std::string_view name) {
  if (name == "kTISNotifySelectedKeyboardInputSourceChanged") {
    return kTISNotifySelectedKeyboardInputSourceChanged;
  }
  if (name == "kTISNotifyEnabledKeyboardInputSourcesChanged") {
    return kTISNotifyEnabledKeyboardInputSourcesChanged;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<platform::Observation> MacInputSourceNotifications::observe(
    std::string_view name, std::function<void()> work) {
  return DistributedObserver::make(constantNamed(name), std::move(work));
}

}  // namespace tessarok::macos
