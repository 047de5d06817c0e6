#pragma once

#include <cstdint>

namespace tessarok {

/// A hardware virtual key code, as the platform numbers the keys of its keyboard.
using KeyCode = std::int64_t;

namespace keyCodes {

inline constexpr KeyCode isoSection = 10;
inline constexpr KeyCode returnKey = 36;
inline constexpr KeyCode tab = 48;
inline constexpr KeyCode space = 49;
inline constexpr KeyCode grave = 50;
inline constexpr KeyCode backspace = 51;
inline constexpr KeyCode escape = 53;
inline constexpr KeyCode enter = 76;
inline constexpr KeyCode home = 115;
inline constexpr KeyCode pageUp = 116;
inline constexpr KeyCode forwardDelete = 117;
inline constexpr KeyCode end = 119;
inline constexpr KeyCode pageDown = 121;
inline constexpr KeyCode left = 123;
inline constexpr KeyCode right = 124;
inline constexpr KeyCode down = 125;
inline constexpr KeyCode up = 126;

}  // namespace keyCodes

}  // namespace tessarok
