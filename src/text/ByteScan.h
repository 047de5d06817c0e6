#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "text/ByteOrder.h"

// What processors have instructions for and C++ has no words for. With TESSAROK_PLAIN_SCAN those
// that every processor has are used instead; a test does so.
#if defined(__SSE2__) && !defined(TESSAROK_PLAIN_SCAN)
#define TESSAROK_SSE2_SCAN
#include <emmintrin.h>
#endif

/// Questions about many bytes at once. Any thread.
namespace tessarok::byteScan {

/// How many bits are set. `std::popcount` is a call where not every processor of the kind has the
/// instruction, and scanning a word list takes 6 % longer with it.
[[nodiscard]] inline std::size_t countOf(std::uint64_t bits) {
  bits -= (bits >> 1) & 0x5555555555555555;
  bits = (bits & 0x3333333333333333) + ((bits >> 2) & 0x3333333333333333);
  return (((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101) >> 56;
}

/// Bytes that `firstDifference` looks at.
inline constexpr std::size_t kCompared = 32;

#ifdef TESSAROK_SSE2_SCAN

[[nodiscard]] inline __m128i vectorAt(const char* data) {
  __m128i vector;
  std::memcpy(&vector, data, sizeof vector);
  return vector;
}

/// Of 64 bytes, bit i is set where byte i has its `bit` clear.
[[nodiscard]] inline std::uint64_t bytesWithout(unsigned bit, const char* data) {
  std::uint64_t with = 0;
  for (unsigned i = 0; i < 64; i += 16) {
    const auto shifted = _mm_slli_epi16(vectorAt(data + i), static_cast<int>(7 - bit));
    with |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(shifted))} << i;
  }
  return ~with;
}

/// Where two texts first differ; `kCompared` where so many bytes are equal.
[[nodiscard]] inline std::size_t firstDifference(const char* one, const char* other) {
  unsigned equal = 0;
  for (unsigned i = 0; i < kCompared; i += 16) {
    const auto bytes = _mm_cmpeq_epi8(vectorAt(one + i), vectorAt(other + i));
    equal |= static_cast<unsigned>(_mm_movemask_epi8(bytes)) << i;
  }
  return static_cast<std::size_t>(std::countr_one(equal));
}

#else

/// Of 64 bytes, bit i is set where byte i has its `bit` clear.
[[nodiscard]] inline std::uint64_t bytesWithout(unsigned bit, const char* data) {
  constexpr std::uint64_t kLowest = 0x0101010101010101;
  // Multiplying puts the lowest bits of eight bytes side by side into the highest byte.
  constexpr std::uint64_t kGather = 0x0102040810204080;
  std::uint64_t found = 0;
  for (unsigned i = 0; i < 64; i += 8) {
    const auto clear = (~byteOrder::littleEndianAt(data + i) >> bit) & kLowest;
    found |= ((clear * kGather) >> 56) << i;
  }
  return found;
}

/// Where two texts first differ; `kCompared` where so many bytes are equal.
[[nodiscard]] inline std::size_t firstDifference(const char* one, const char* other) {
  for (std::size_t i = 0; i < kCompared; i += 8) {
    const auto different =
        byteOrder::littleEndianAt(one + i) ^ byteOrder::littleEndianAt(other + i);
    if (different != 0) return i + static_cast<std::size_t>(std::countr_zero(different)) / 8;
  }
  return kCompared;
}

#endif

}  // namespace tessarok::byteScan
