#include "desktops/macos/PermissionNotification.h"

#include <utility>

#include "desktops/macos/CfString.h"
#include "desktops/macos/MacRunLoop.h"

namespace tessarok::macos {

namespace {

constexpr const char* kName = "com.apple.accessibility.api";
/// Seconds after the announcement.
constexpr double kLaterLooks[] = {0.1, 0.5};

}  // namespace

PermissionNotification::PermissionNotification(std::function<void()> look)
    : look_(std::make_shared<const Look>(std::move(look))), name_(cfString::make(kName)) {
  observer_ = DistributedObserver::make(name_.get(), [weak = std::weak_ptr(look_)] {
    const auto lookAgain = [weak] {
      if (const auto work = weak.lock()) (*work)();
    };
    for (const double delay : kLaterLooks)
      MacRunLoop().after(delay, lookAgain);
    lookAgain();
  });
}

}  // namespace tessarok::macos
