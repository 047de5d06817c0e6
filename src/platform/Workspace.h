#pragma once

#include <filesystem>
#include <string_view>

namespace tessarok::platform {

/// Opens things for the person in other programs. Main thread.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// Opens a file in the person's default program for it.
  virtual void openFile(const std::filesystem::path& file) = 0;
  virtual void openUrl(std::string_view url) = 0;
};

}  // namespace tessarok::platform
