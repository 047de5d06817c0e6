#pragma once

#include "platform/Event.h"

namespace tessarok::platform {

/// The place in the event stream at which a tap's callback runs. Events posted here come in their
/// order, after everything that has passed and before the user's next event; only taps behind this
/// one see them. An event in hand that passes comes after them on a Mac and may come before them
/// elsewhere, so whoever posts swallows it, and posts a copy where it belongs. Valid only while the
/// callback runs.
class EventTapProxy {
 public:
  virtual ~EventTapProxy() = default;
  /// Takes the event as it is now; later changes to it do not show.
  virtual void post(const Event& event) = 0;
};

}  // namespace tessarok::platform
