#pragma once

namespace tessarok::platform {

/// Why a lock could not be had. `number` is the system's error number.
struct FileLockFailure {
  enum class Reason { cannotOpen, heldByAnother, cannotLock };
  Reason reason = Reason::cannotOpen;
  int number = 0;
};

}  // namespace tessarok::platform
