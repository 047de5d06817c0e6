#pragma once

#include <cstdint>

/// Modifier masks of an event's flags.
namespace tessarok::platform::eventFlags {

inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t function = 0x800000;

}  // namespace tessarok::platform::eventFlags
