#pragma once

#include <optional>

#include "desktops/x11/ThreadTimes.h"

namespace tessarok::x11 {

/// The `Watchdog`'s suspicion that the worker hangs, from the alarm until it is confirmed or the
/// worker shows a sign of life. Any thread.
///
/// Why it does not go by the clock alone: a worker that is only slow would be ended with the keys
/// that it has in hand. It is slow through no fault of its own where others have the processors,
/// where the disk is waited for, and where the server does not answer; a server does not for a
/// second or two while a screen is plugged in, and is the only one that could free the keyboards.
class Suspicion final {
 public:
  /// Seconds between two looks.
  static constexpr double kInterval = 0.1;

  struct Look {
    /// Absent where the system does not tell, and time alone has to count.
    std::optional<ThreadTimes> worker;
    /// The server has answered what it was asked at the look before.
    bool hasServerAnswered = true;
  };

  /// One look more, the first at the alarm. Whether the worker hangs beyond doubt.
  [[nodiscard]] bool isConfirmedBy(const Look& look);

 private:
  [[nodiscard]] bool isIdle(const Look& look) const;
  [[nodiscard]] bool isBusy() const;

  int looks_ = 0;
  /// Looks that found that it had done nothing since the one before, and nobody kept it from it.
  int idle_ = 0;
  std::optional<ThreadTimes> first_;
  std::optional<ThreadTimes> last_;
};

}  // namespace tessarok::x11
