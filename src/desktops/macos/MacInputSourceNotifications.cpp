#include "desktops/macos/MacInputSourceNotifications.h"

#include <Carbon/Carbon.h>
#include <utility>

#include "desktops/macos/DistributedObserver.h"

namespace tessarok::macos {

namespace {

/// Null for what this centre does not announce.
CFStringRef nameOf(platform::Notification notification) {
  switch (notification) {
    case platform::Notification::selectedInputSourceChanged:
      return kTISNotifySelectedKeyboardInputSourceChanged;
    case platform::Notification::enabledInputSourcesChanged:
      return kTISNotifyEnabledKeyboardInputSourcesChanged;
    default:
      return nullptr;
  }
}

}  // namespace

std::unique_ptr<platform::Observation> MacInputSourceNotifications::observe(
    platform::Notification notification, std::function<void()> work) {
  return DistributedObserver::make(nameOf(notification), std::move(work));
}

}  // namespace tessarok::macos
