#pragma once

#include <memory>
#include <variant>

#include "platform/FileLockFailure.h"

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

/// What an attempt to lock a file gives. The lock is not null.
using FileLockResult = std::variant<std::unique_ptr<FileLock>, FileLockFailure>;

}  // namespace tessarok::platform
