#include "desktops/macos/MacInputSourceNotifications.h"

#include <Carbon/Carbon.h>
#include <utility>

namespace tessarok::macos {

namespace {

class Observer final : public platform::Observation {
 public:
  Observer(CFNotificationCenterRef centre, CFStringRef name, std::function<void()> work)
      : centre_(centre), name_(name), work_(std::move(work)) {
    // A program that is never active has its notifications held back unless it asks for them.
    CFNotificationCenterAddObserver(centre_, this, &Observer::receive, name_, nullptr,
                                    CFNotificationSuspensionBehaviorDeliverImmediately);
  }
  ~Observer() override { CFNotificationCenterRemoveObserver(centre_, this, name_, nullptr); }

 private:
  static void receive(CFNotificationCenterRef, void* observer, CFNotificationName, const void*,
                      CFDictionaryRef) {
    static_cast<Observer*>(observer)->work_();
  }

  CFNotificationCenterRef centre_;
  CFStringRef name_;
  std::function<void()> work_;
};

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
  const auto constant = constantNamed(name);
  const auto centre = CFNotificationCenterGetDistributedCenter();
  if (constant == nullptr || centre == nullptr) return nullptr;
  return std::make_unique<Observer>(centre, constant, std::move(work));
}

}  // namespace tessarok::macos
