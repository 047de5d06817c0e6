#pragma once

#include "platform/Notifications.h"

namespace tessarok::macos {

/// The system-wide centre through which every program hears of changes of the input sources.
/// Observers are called on the main thread, which is the one that registers them.
class MacInputSourceNotifications final : public platform::Notifications {
 public:
  /// `name` is the name of the system's constant, which is not the text that it holds.
  std::unique_ptr<platform::Observation> observe(std::string_view name,
                                                 std::function<void()> work) override;
};

}  // namespace tessarok::macos
