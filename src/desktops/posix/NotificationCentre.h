#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/Notifications.h"

namespace tessarok::posix {

/// A notification centre inside the process: what a desktop notices, it announces here.
class NotificationCentre final : public platform::Notifications {
 public:
  std::unique_ptr<platform::Observation> observe(std::string_view name,
                                                 std::function<void()> work) override;
  /// Calls every observer of `name`, in the order in which they came.
  void announce(std::string_view name);

 private:
  struct Observer {
    std::string name;
    std::function<void()> work;
  };
  class Token;

  std::map<std::uint64_t, Observer> observers_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace tessarok::posix
