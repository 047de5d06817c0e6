#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// Text as input methods count it: in Unicode scalars. Pure functions, any thread.
namespace tessarok::inputmethod {

/// Whether a byte of UTF-8 goes on with a scalar.
[[nodiscard]] constexpr bool continuesScalar(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// How many there are.
[[nodiscard]] inline std::ptrdiff_t scalars(std::string_view text) {
  return std::count_if(text.begin(), text.end(), [](char byte) { return !continuesScalar(byte); });
}

/// The bytes of so many at the beginning; all of them when there are not so many.
[[nodiscard]] constexpr std::size_t bytesOfScalars(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; count > 0 && at < text.size(); --count) {
    ++at;
    while (at < text.size() && continuesScalar(text[at]))
      ++at;
  }
  return at;
}

}  // namespace tessarok::inputmethod
