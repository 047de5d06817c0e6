#pragma once

#include <cstdint>

/// Keys of the keyboards in these tests, as X numbers them: the kernel's codes plus 8.
namespace tessarok::testing {

inline constexpr std::uint8_t kOne = 10;
inline constexpr std::uint8_t kBackspace = 22;
inline constexpr std::uint8_t kControl = 37;
inline constexpr std::uint8_t kA = 38;
/// Grave accent or ё.
inline constexpr std::uint8_t kGrave = 49;
inline constexpr std::uint8_t kShift = 50;
inline constexpr std::uint8_t kB = 56;
inline constexpr std::uint8_t kAlt = 64;
inline constexpr std::uint8_t kSpace = 65;
inline constexpr std::uint8_t kCaps = 66;
inline constexpr std::uint8_t kBesideShift = 94;
inline constexpr std::uint8_t kLeftArrow = 113;
inline constexpr std::uint8_t kPause = 127;

}  // namespace tessarok::testing
