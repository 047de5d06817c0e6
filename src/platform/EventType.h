#pragma once

#include <cstdint>

namespace tessarok::platform {

/// The kinds of event that a tap receives. The numbers are those of the platform's event types,
/// so that they can be logged and masked.
enum class EventType : std::uint32_t {
  leftMouseDown = 1,
  rightMouseDown = 3,
  keyDown = 10,
  keyUp = 11,
  otherMouseDown = 25,
  /// Pseudo-events: the system has disabled the tap.
  tapDisabledByTimeout = 0xFFFFFFFE,
  tapDisabledByUserInput = 0xFFFFFFFF,
};

}  // namespace tessarok::platform
