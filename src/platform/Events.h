#pragma once

#include <cstdint>
#include <memory>

#include "platform/Event.h"
#include "platform/EventSource.h"

namespace tessarok::platform {

/// Makes synthetic events. Main thread.
class Events {
 public:
  virtual ~Events() = default;
  /// An event source whose state is shared with nobody; null when the system refuses.
  [[nodiscard]] virtual std::unique_ptr<EventSource> createPrivateSource() = 0;
  /// A key-down (or key-up) for a virtual key; null when the system refuses.
  [[nodiscard]] virtual std::unique_ptr<Event> createKeyboardEvent(EventSource& source,
                                                                   std::int64_t keyCode,
                                                                   bool keyDown) = 0;
};

}  // namespace tessarok::platform
