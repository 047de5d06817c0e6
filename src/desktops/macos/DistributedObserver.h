#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <functional>
#include <memory>

#include "platform/Observation.h"

namespace tessarok::macos {

/// Hears one notification of the centre that all programs share, until it is destroyed. Called on
/// the main thread, which is the one that registers.
class DistributedObserver final : public platform::Observation {
 public:
  /// Null without a name, as for a constant that the system does not have, or without a centre.
  [[nodiscard]] static std::unique_ptr<DistributedObserver> make(CFStringRef name,
                                                                 std::function<void()> work);
  ~DistributedObserver() override;

 private:
  DistributedObserver(CFNotificationCenterRef centre, CFStringRef name, std::function<void()> work);
  static void receive(CFNotificationCenterRef, void* observer, CFNotificationName, const void*,
                      CFDictionaryRef);

  CFNotificationCenterRef centre_;
  /// A constant, of the system or of the program: it outlives the observer.
  CFStringRef name_;
  std::function<void()> work_;
};

}  // namespace tessarok::macos
