#pragma once

#include <cstdint>
#include <functional>
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
  /// The same for what need not be known: where no notification is shown nothing is said.
  /// `answered`, which may be empty, hears whether it is shown.
  void offer(const std::string& summary, const std::string& body,
             const std::function<void(bool isShown)>& answered);

 private:
  /// Whether it could be sent; the handler hears whether it is shown.
  [[nodiscard]] bool send(const std::string& summary, const std::string& body,
                          std::function<void(bool isShown)> answered);

  Bus* session_;
  platform::SystemLog& log_;
  std::uint32_t shown_ = 0;
  BusSlot answer_;
};

}  // namespace tessarok::freedesktop
