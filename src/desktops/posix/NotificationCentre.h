#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "platform/Notifications.h"

namespace tessarok::posix {

/// A notification centre inside the process: what a desktop notices, it announces here.
class NotificationCentre final : public platform::Notifications {
 public:
  std::unique_ptr<platform::Observation> observe(platform::Notification notification,
                                                 std::function<void()> work) override;
  /// Calls every observer of `notification`, in the order in which they came.
  void announce(platform::Notification notification);

 private:
  struct Observer {
    platform::Notification notification;
    std::function<void()> work;
  };
  class Token;

  std::map<std::uint64_t, Observer> observers_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace tessarok::posix
