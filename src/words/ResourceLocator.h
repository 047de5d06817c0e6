#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tessarok {

/// Finds the read-only data files by their base names. No state, no cache: every call searches
/// again. Main thread.
class ResourceLocator {
 public:
  ResourceLocator() = delete;
  /// Where `name`.txt lies; absent when it is nowhere. An installed program looks only in its own
  /// resources, a bare executable in $TESSAROK_RES, ./Resources and the source tree's Resources.
  [[nodiscard]] static std::optional<std::filesystem::path> find(std::string_view name);
};

}  // namespace tessarok
