#pragma once

#include <memory>

#include "platform/Event.h"
#include "platform/EventTapProxy.h"
#include "platform/EventType.h"
#include "platform/RunLoopSource.h"

namespace tessarok::platform {

/// What a tap calls for every event: returns the event to deliver, or null to swallow it.
/// `event` is null for the pseudo-events that tell of a disabled tap.
using EventTapCallback = Event* (*)(EventTapProxy* proxy, EventType type, Event* event,
                                    void* userData);

/// A system-wide tap that sees every key before the application does. Main thread.
class EventTap {
 public:
  EventTap() = default;
  EventTap(const EventTap&) = delete;
  EventTap& operator=(const EventTap&) = delete;
  virtual ~EventTap() = default;

  [[nodiscard]] virtual bool isEnabled() const = 0;
  virtual void enable(bool enabled) = 0;
  /// Ends the tap for good; no callback runs afterwards.
  virtual void invalidate() = 0;
  /// What makes the run loop call the tap's callback.
  [[nodiscard]] virtual std::unique_ptr<RunLoopSource> createRunLoopSource(int order) = 0;
};

}  // namespace tessarok::platform
