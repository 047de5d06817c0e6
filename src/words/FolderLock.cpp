#include "words/FolderLock.h"

#include <utility>
#include <variant>

#include "platform/Desktop.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

using Reason = platform::FileLockFailure::Reason;

std::string messageOf(const platform::FileLockFailure& failure) {
  const auto number = " (errno " + std::to_string(failure.number) + ")";
  if (failure.reason == Reason::cannotOpen) return "could not open instance lock" + number;
  if (failure.reason == Reason::heldByAnother) return "another instance is already running";
  return "could not acquire instance lock" + number;
}

}  // namespace

std::optional<FolderLock::Obstacle> FolderLock::acquire(const char* name,
                                                        std::unique_ptr<platform::FileLock>& lock) {
  auto& files = platform::desktop().files();
  const auto folder = UserDict::directory();
  if (const auto failure = files.createDirectories(folder)) {
    return Obstacle{"could not create instance lock directory: " + failure.reason()};
  }
  auto result = files.lockExclusively(folder / name);
  if (const auto* failure = std::get_if<platform::FileLockFailure>(&result)) {
    return Obstacle{messageOf(*failure), failure->reason == Reason::heldByAnother};
  }
  lock = std::move(std::get<std::unique_ptr<platform::FileLock>>(result));
  return std::nullopt;
}

}  // namespace tessarok
