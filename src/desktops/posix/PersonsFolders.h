#pragma once

#include <filesystem>

namespace tessarok::posix {

/// Where programs keep a person's data on this system: the folder that holds one for each program.
[[nodiscard]] std::filesystem::path dataHome(const std::filesystem::path& home);

}  // namespace tessarok::posix
