#pragma once

#include <filesystem>

namespace tessarok::virtualdesktop {

/// A new, empty directory that is removed with everything in it when the object goes. Throws
/// `std::filesystem::filesystem_error` when none can be made.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace tessarok::virtualdesktop
