#pragma once

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <unistd.h>

namespace tessarok::posix {

/// Writes all of it, however many calls that takes; false leaves errno. May wait for the disk.
[[nodiscard]] inline bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace tessarok::posix
