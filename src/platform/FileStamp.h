#pragma once

#include <cstdint>
#include <optional>

namespace tessarok::platform {

/// Tells one state of a file from another. A file swapped in by rename changes `inode` even when
/// time and size happen to match. A field is absent when the file system does not report it.
struct FileStamp {
  /// Nanoseconds since the epoch.
  std::optional<std::int64_t> modified;
  std::optional<std::uint64_t> size;
  std::optional<std::uint64_t> inode;

  bool operator==(const FileStamp&) const = default;
};

}  // namespace tessarok::platform
