#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Environment.h"

namespace tessarok::freedesktop {

/// Where the program's icon files lie, as it was when the object was made: panels ask at any time,
/// and a disk that takes its time must not hold up the keys then. Main thread.
class IconTheme final {
 public:
  /// Looks in the folders that every panel searches, then beside the executable.
  explicit IconTheme(platform::Environment& environment);
  /// `standard` are the folders of icon themes that every panel searches; `own` is one that a
  /// panel has to be told about.
  IconTheme(const std::vector<std::filesystem::path>& standard,
            const std::optional<std::filesystem::path>& own);

  /// The folder that a panel must search besides its own ones to find the icon, empty when it
  /// needs no other; absent when there is no such icon.
  [[nodiscard]] std::optional<std::string> folderFor(const std::string& icon) const;

 private:
  /// Of every icon that there is.
  std::map<std::string, std::string, std::less<>> folders_;
};

}  // namespace tessarok::freedesktop
