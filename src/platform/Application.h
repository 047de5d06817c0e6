#pragma once

#include <string_view>
#include <vector>

#include "platform/RunningApplication.h"

namespace tessarok::platform {

/// This process as the desktop sees it, and others of its kind. Main thread.
class Application {
 public:
  virtual ~Application() = default;
  /// No Dock icon, no main menu.
  virtual void becomeAccessory() = 0;
  [[nodiscard]] virtual RunningApplication self() = 0;
  /// Every running process with this identifier, this one included where it counts.
  [[nodiscard]] virtual std::vector<RunningApplication> running(std::string_view identifier) = 0;
  /// Asks the event loop to end the program, which then calls
  /// `AppDelegate::applicationWillTerminate`.
  virtual void terminate() = 0;
};

}  // namespace tessarok::platform
