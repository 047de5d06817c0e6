#pragma once

#include <cstdint>
#include <string>

#include "typing/KeyCodes.h"

struct xkb_state;

/// What keys show on their caps, in a keymap of XKB. Main thread.
namespace tessarok::xkb::shownKeys {

/// What a hardware key gives with or without Shift in a layout of the keymap, dead keys as plain
/// characters; empty for keys that show nothing. The key beside the left Shift shows nothing when
/// it only repeats what others show. The state is for working it out, and is another behind it.
[[nodiscard]] std::u16string shown(xkb_state& scratch, KeyCode code, bool shift,
                                   std::uint32_t group);

}  // namespace tessarok::xkb::shownKeys
