#pragma once

#include <cstdint>

#include "typing/KeyCodes.h"

/// The one table between the keys of an X server and the hardware codes that the corrector knows.
namespace tessarok::xkb::hardwareKeys {

/// X key codes are the kernel's plus this on every server of today.
inline constexpr unsigned kXOffset = 8;
/// The code of keys that are not in the table.
inline constexpr KeyCode kNoKey = 0xFFFF;
/// The X key code of the Pause key.
inline constexpr std::uint8_t kPause = 127;

/// The hardware code of an X key code.
[[nodiscard]] KeyCode codeOf(std::uint8_t xKey);
/// The X key code of a hardware code; 0 for codes outside the table.
[[nodiscard]] std::uint8_t xKeyOf(KeyCode code);

}  // namespace tessarok::xkb::hardwareKeys
