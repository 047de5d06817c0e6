#pragma once

#include <filesystem>
#include <optional>

namespace tessarok::commands {

/// What every command understands.
struct Options {
  /// The directory of the data files; absent to search for it.
  std::optional<std::filesystem::path> resources;
};

}  // namespace tessarok::commands
