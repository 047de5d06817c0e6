#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// Eight bytes of a text as one number. Any thread.
namespace tessarok::byteOrder {

[[nodiscard]] inline std::uint64_t nativeAt(const char* data) {
  std::uint64_t word = 0;
  std::memcpy(&word, data, sizeof word);
  return word;
}

/// The first byte is the lowest.
[[nodiscard]] inline std::uint64_t littleEndianAt(const char* data) {
  const auto word = nativeAt(data);
  return std::endian::native == std::endian::little ? word : __builtin_bswap64(word);
}

/// The first byte is the highest, so that numbers compare as the bytes do.
[[nodiscard]] inline std::uint64_t bigEndianAt(const char* data) {
  const auto word = nativeAt(data);
  return std::endian::native == std::endian::big ? word : __builtin_bswap64(word);
}

}  // namespace tessarok::byteOrder
