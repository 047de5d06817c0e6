#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessarok::text {

/// Bytes as pairs of the digits 0 to 9 and a to f, for where not every byte can stand. Any thread.
[[nodiscard]] std::string hexOf(std::string_view bytes);
/// Absent when these are no such pairs.
[[nodiscard]] std::optional<std::string> bytesOfHex(std::string_view digits);

}  // namespace tessarok::text
