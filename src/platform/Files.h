#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Failure.h"
#include "platform/FileLock.h"
#include "platform/FileStamp.h"
#include "platform/MappedFile.h"

namespace tessarok::platform {

/// Files as the corrector needs them. An operation that can fail answers with an absent value or
/// with the description of the error, never with an exception. Any thread.
class Files {
 public:
  virtual ~Files() = default;

  [[nodiscard]] virtual std::filesystem::path homeDirectory() = 0;
  /// The folder that holds every program's own data of this person; absent when unknown.
  [[nodiscard]] virtual std::optional<std::filesystem::path> applicationSupportDirectory() = 0;

  /// False only for what is known not to be there.
  [[nodiscard]] virtual bool exists(const std::filesystem::path& file) = 0;
  [[nodiscard]] virtual bool isReadable(const std::filesystem::path& file) = 0;
  /// Absent when the file's attributes cannot be read.
  [[nodiscard]] virtual std::optional<FileStamp> stamp(const std::filesystem::path& file) = 0;
  /// The whole file, if it is one and of a size that can be a person's own list; absent on failure,
  /// with the reason in `error` when that is given.
  [[nodiscard]] virtual std::optional<std::string> read(const std::filesystem::path& file,
                                                        std::string* error = nullptr) = 0;
  /// The names in a folder, in no order; those that could be read.
  [[nodiscard]] virtual std::vector<std::string> list(const std::filesystem::path& folder) = 0;
  /// Null when the file cannot be opened or mapped.
  [[nodiscard]] virtual std::unique_ptr<MappedFile> map(const std::filesystem::path& file) = 0;

  /// Creates a folder with all folders above it, with default permissions.
  virtual Failure createDirectories(const std::filesystem::path& folder) = 0;
  /// Replaces the file's content at once: a reader, or the next start after a crash, finds the
  /// old or the new text, never half of one.
  virtual Failure writeAtomically(const std::filesystem::path& file, std::string_view text) = 0;
  /// Removes a file, a link itself rather than what is at its end; whether it is gone now.
  [[nodiscard]] virtual bool remove(const std::filesystem::path& file) = 0;
  /// Adds to the end of a log file, creating it with default permissions when it is missing and
  /// emptying it first when it is longer than `restartAbove` bytes. The path is taken as given: it
  /// may be a link, a device or a pipe. Failures are ignored.
  virtual void appendToLog(const std::filesystem::path& file, std::string_view text,
                           std::uint64_t restartAbove) = 0;
  /// Opens a file, creating it for its owner alone, and locks it without waiting. Nothing is
  /// written into it: it may be a link to another.
  [[nodiscard]] virtual FileLockResult lockExclusively(const std::filesystem::path& file) = 0;
  /// Whether another process holds the lock on a file. Asking takes nothing, so it never makes
  /// another start fail.
  [[nodiscard]] virtual bool isLockedByAnother(const std::filesystem::path& file) = 0;
};

}  // namespace tessarok::platform
