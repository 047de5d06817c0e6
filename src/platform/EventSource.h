#pragma once

namespace tessarok::platform {

/// Where synthetic events come from. Opaque: only the desktop that made it looks inside.
class EventSource {
 public:
  EventSource() = default;
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;
  virtual ~EventSource() = default;
};

}  // namespace tessarok::platform
