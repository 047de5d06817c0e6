#pragma once

#include <limits>
#include <optional>

#include "platform/Clock.h"
#include "platform/Keyboard.h"

namespace tessarok::plain {

/// A keyboard whose keys the desktop itself sees go down. Main thread.
class PlainKeyboard : public platform::Keyboard {
 public:
  /// `clock` outlives this object.
  explicit PlainKeyboard(platform::Clock& clock) : clock_(clock) {}

  double secondsSinceLastKeyDown() final {
    if (!lastKeyDownAt_) return std::numeric_limits<double>::infinity();
    return clock_.uptime() - *lastKeyDownAt_;
  }
  /// A key went down, whether or not a tap sees it.
  void noteKeyDown() { lastKeyDownAt_ = clock_.uptime(); }

 private:
  platform::Clock& clock_;
  std::optional<double> lastKeyDownAt_;
};

}  // namespace tessarok::plain
