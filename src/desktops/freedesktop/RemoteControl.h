#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "app/AppDelegate.h"
#include "desktops/freedesktop/Bus.h"
#include "platform/RunLoop.h"

namespace tessarok::freedesktop {

/// Lets the person's other programs ask how the corrector stands and switch it: an object on the
/// session bus, which is the person's own. What was typed cannot be asked for. Main thread.
///
/// `busctl --user introspect app.tessarok /app/tessarok` shows what there is; `tessarok status`,
/// `on`, `off`, `pause` and `quit` use it.
class RemoteControl final {
 public:
  static constexpr const char* kName = "app.tessarok";
  static constexpr const char* kPath = "/app/tessarok";
  static constexpr const char* kInterface = "app.tessarok.Control1";

  /// What only the desktop knows.
  struct Desktop {
    /// Its name, such as "x11".
    std::string name;
    /// What does not work here and why, a sentence each.
    std::function<std::vector<std::string>()> obstacles;
  };

  /// `bus`, `loop` and `delegate` outlive the object.
  RemoteControl(Bus& bus, platform::RunLoop& loop, AppDelegate& delegate, Desktop desktop);
  RemoteControl(const RemoteControl&) = delete;
  RemoteControl& operator=(const RemoteControl&) = delete;
  ~RemoteControl() = default;

 private:
  struct Calls;

  platform::RunLoop& loop_;
  AppDelegate& delegate_;
  Desktop desktop_;
  std::chrono::system_clock::time_point since_ = std::chrono::system_clock::now();
  BusSlot object_;
  BusSlot name_;
};

}  // namespace tessarok::freedesktop
