#pragma once

#include <memory>
#include <variant>

namespace tessarok::platform {

/// An open, exclusively locked file; destroying it closes the file and so gives the lock up. The
/// lock also ends with the process, however it ends.
class FileLock {
 public:
  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  virtual ~FileLock() = default;
};

/// Why a lock could not be had. `number` is the system's error number.
struct FileLockFailure {
  enum class Reason { cannotOpen, heldByAnother, cannotLock };
  Reason reason = Reason::cannotOpen;
  int number = 0;
};

using FileLockResult = std::variant<std::unique_ptr<FileLock>, FileLockFailure>;

}  // namespace tessarok::platform
