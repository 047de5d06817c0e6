#include "desktops/macos/DistributedObserver.h"

#include <utility>

namespace tessarok::macos {

std::unique_ptr<DistributedObserver> DistributedObserver::make(CFStringRef name,
                                                               std::function<void()> work) {
  const auto centre = CFNotificationCenterGetDistributedCenter();
  if (name == nullptr || centre == nullptr) return nullptr;
  return std::unique_ptr<DistributedObserver>(
      new DistributedObserver(centre, name, std::move(work)));
}

DistributedObserver::DistributedObserver(CFNotificationCenterRef centre, CFStringRef name,
                                         std::function<void()> work)
    : centre_(centre), name_(name), work_(std::move(work)) {
  // A program that is never active has its notifications held back unless it asks for them.
  CFNotificationCenterAddObserver(centre_, this, &DistributedObserver::receive, name_, nullptr,
                                  CFNotificationSuspensionBehaviorDeliverImmediately);
}

DistributedObserver::~DistributedObserver() {
  CFNotificationCenterRemoveObserver(centre_, this, name_, nullptr);
}

void DistributedObserver::receive(CFNotificationCenterRef, void* observer, CFNotificationName,
                                  const void*, CFDictionaryRef) {
  // A copy, because the work may destroy the observer.
  const auto work = static_cast<DistributedObserver*>(observer)->work_;
  work();
}

}  // namespace tessarok::macos
