#pragma once

#include <cstdint>
#include <memory>

#include "platform/EventTap.h"

namespace tessarok::platform {

/// Creates event taps. Main thread.
class EventTaps {
 public:
  virtual ~EventTaps() = default;
  /// An active tap at the head of the session's event stream, created enabled or not as the
  /// system likes, for the event types whose bits (1 << type) are set in `mask`. Null when the
  /// system refuses, as it does without permission. `userData` is not owned.
  [[nodiscard]] virtual std::unique_ptr<EventTap> create(std::uint64_t mask,
                                                         EventTapCallback callback,
                                                         void* userData) = 0;
  /// Whether the program may post events; asked only for the diagnostic log.
  [[nodiscard]] virtual bool preflightPostAccess() = 0;
};

}  // namespace tessarok::platform
