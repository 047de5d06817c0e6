#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/Environment.h"

namespace tessarok::freedesktop {

/// Where the program's icon files lie. Main thread.
class IconTheme final {
 public:
  /// Looks in the folders that every panel searches, then beside the executable.
  explicit IconTheme(platform::Environment& environment);
  /// `standard` are the folders of icon themes that every panel searches; `own` is one that a
  /// panel has to be told about.
  IconTheme(std::vector<std::filesystem::path> standard, std::optional<std::filesystem::path> own)
      : standard_(std::move(standard)), own_(std::move(own)) {}

  /// The folder that a panel must search besides its own ones to find the icon, empty when it
  /// needs no other; absent when there is no such icon.
  [[nodiscard]] std::optional<std::string> folderFor(const std::string& icon) const;

 private:
  std::vector<std::filesystem::path> standard_;
  std::optional<std::filesystem::path> own_;
};

}  // namespace tessarok::freedesktop
