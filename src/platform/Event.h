#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "platform/EventSource.h"
#include "platform/EventType.h"

namespace tessarok::platform {

/// One keyboard or mouse event of a desktop, read and changed in place. Main thread.
class Event {
 public:
  Event() = default;
  Event& operator=(const Event&) = delete;
  virtual ~Event() = default;

  /// The hardware virtual key code.
  [[nodiscard]] virtual std::int64_t keyCode() const = 0;
  /// Modifiers held, as masks of `eventFlags`.
  [[nodiscard]] virtual std::uint64_t flags() const = 0;
  [[nodiscard]] virtual bool isAutorepeat() const = 0;
  /// A number that the event's maker attached; 0 on hardware events.
  [[nodiscard]] virtual std::int64_t sourceUserData() const = 0;
  /// Copies as much of the typed text as fits and returns the length of all of it, in UTF-16
  /// units: a result above `units.size()` means that the copy is cut short.
  [[nodiscard]] virtual std::size_t unicodeString(std::span<char16_t> units) const = 0;

  /// A copy of its own; null when the system cannot make one.
  [[nodiscard]] virtual std::unique_ptr<Event> copy() const = 0;
  virtual void setSource(EventSource& source) = 0;
  virtual void setType(EventType type) = 0;
  virtual void setFlags(std::uint64_t flags) = 0;
  virtual void setAutorepeat(bool autorepeat) = 0;
  virtual void setSourceUserData(std::int64_t userData) = 0;
  virtual void setUnicodeString(std::u16string_view units) = 0;

 protected:
  Event(const Event&) = default;
};

}  // namespace tessarok::platform
