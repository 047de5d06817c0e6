#pragma once

#include <cstdint>

namespace tessarok::inputmethod {

/// A key as input methods tell it, in the numbers of X. A plain value.
struct Key {
  /// The X key symbol.
  std::uint32_t symbol = 0;
  /// The modifiers, as masks of `keyStates`.
  std::uint32_t states = 0;
  /// The X key code; 0 where the program does not tell.
  int code = 0;
};

/// The masks of X, and those that toolkits and input methods add in the bits above.
namespace keyStates {
inline constexpr std::uint32_t shift = 1u << 0;
inline constexpr std::uint32_t capsLock = 1u << 1;
inline constexpr std::uint32_t control = 1u << 2;
inline constexpr std::uint32_t alt = 1u << 3;
inline constexpr std::uint32_t numLock = 1u << 4;
inline constexpr std::uint32_t mod3 = 1u << 5;
inline constexpr std::uint32_t super = 1u << 6;
inline constexpr std::uint32_t mod5 = 1u << 7;
inline constexpr std::uint32_t superToo = 1u << 26;
inline constexpr std::uint32_t hyper = 1u << 27;
inline constexpr std::uint32_t meta = 1u << 28;
/// Where a framework tells that a key repeats.
inline constexpr std::uint32_t repeat = 1u << 31;
}  // namespace keyStates

}  // namespace tessarok::inputmethod
