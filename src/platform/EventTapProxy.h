#pragma once

#include "platform/Event.h"

namespace tessarok::platform {

/// The place in the event stream at which a tap's callback runs; events posted here follow the
/// event in hand and precede the user's next one. Valid only while the callback runs.
class EventTapProxy {
 public:
  virtual ~EventTapProxy() = default;
  /// Takes the event as it is now; later changes to it do not show.
  virtual void post(const Event& event) = 0;
};

}  // namespace tessarok::platform
