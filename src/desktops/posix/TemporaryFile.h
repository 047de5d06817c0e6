#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::posix {

/// A new file beside the one that it is to replace, which goes away unless it was put in that one's
/// place. Any thread; may wait for the disk.
class TemporaryFile final {
 public:
  explicit TemporaryFile(const std::filesystem::path& target);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Writes the text to the disk and puts the file in the target's place, with the target's
  /// permissions; false leaves errno.
  [[nodiscard]] bool replace(const std::filesystem::path& target, std::string_view text);

  /// Whether a file is what a write that was cut off has left. Written to or linked by anybody
  /// else, it is not.
  [[nodiscard]] static bool isLeftover(const std::filesystem::path& file);

 private:
  void keepMode(const std::filesystem::path& target);

  std::string name_;
  FileDescriptor descriptor_;
  bool exists_ = false;
};

}  // namespace tessarok::posix
