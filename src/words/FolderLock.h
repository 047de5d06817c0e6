#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/FileLock.h"

namespace tessarok {

/// The locks in the per-user folder, by which running copies know of each other. Any thread.
class FolderLock {
 public:
  FolderLock() = delete;

  /// Held by the one copy that may sit on a whole desktop.
  static constexpr const char* kInstance = "instance.lock";
  /// Held by the copy that writes what is learned, when it is one of many. Hidden, because people
  /// look into this folder.
  static constexpr const char* kLearning = ".learning.lock";

  /// Why a lock could not be had.
  struct Obstacle {
    /// For the system log.
    std::string message;
    bool isHeldByAnother = false;
  };

  /// Locks a file of the folder, which is made where it is missing. Absent when `lock` is held
  /// now.
  [[nodiscard]] static std::optional<Obstacle> acquire(const char* name,
                                                       std::unique_ptr<platform::FileLock>& lock);
};

}  // namespace tessarok
