#pragma once

#include <string>
#include <string_view>

namespace tessarok::makedata {

/// The SHA-256 of the bytes as 64 lower-case hexadecimal digits.
[[nodiscard]] std::string sha256(std::string_view bytes);

}  // namespace tessarok::makedata
