#pragma once

namespace tessarok::platform {

/// What a desktop announces: of its input sources, and of the workspace that a person is in.
enum class Notification {
  selectedInputSourceChanged,
  enabledInputSourcesChanged,
  applicationActivated,
  willSleep,
  didWake,
  screensDidSleep,
  /// Another session is in front, or this one is locked.
  sessionResignedActive,
  sessionBecameActive,
};

}  // namespace tessarok::platform
