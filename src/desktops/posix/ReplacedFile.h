#pragma once

#include <filesystem>
#include <optional>
#include <sys/types.h>
#include <utility>

namespace tessarok::posix {

/// Knows a file again, which an upgrade replaces by another of the same name. Each call may wait
/// for the disk; any thread, one at a time.
class ReplacedFile final {
 public:
  explicit ReplacedFile(std::filesystem::path file);

  /// Whether another file has its name by now. Not while there is none: that may be on its way, or
  /// the program was removed.
  [[nodiscard]] bool isReplaced() const;

 private:
  using Identity = std::pair<dev_t, ino_t>;

  [[nodiscard]] std::optional<Identity> identity() const;

  std::filesystem::path file_;
  /// Absent when there was no such file, which then never counts as replaced.
  std::optional<Identity> first_;
};

}  // namespace tessarok::posix
