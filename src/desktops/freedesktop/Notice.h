#pragma once

#include <cstdint>
#include <string>

#include "desktops/freedesktop/Bus.h"
#include "platform/SystemLog.h"

namespace tessarok::freedesktop {

/// Tells the person something in a notification of the desktop; where none is shown, in the
/// system log. Main thread.
class Notice final {
 public:
  /// `session` is null when there is no session bus; both outlive the object.
  Notice(Bus* session, platform::SystemLog& log) : session_(session), log_(log) {}

  /// A new notice takes the place of the last one.
  void show(const std::string& summary, const std::string& body);

 private:
  Bus* session_;
  platform::SystemLog& log_;
  std::uint32_t shown_ = 0;
  BusSlot answer_;
};

}  // namespace tessarok::freedesktop
