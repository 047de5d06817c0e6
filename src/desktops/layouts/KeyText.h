#pragma once

#include <cstdint>
#include <string>

#include "desktops/layouts/KeyTable.h"
#include "typing/KeyCodes.h"

namespace tessarok::layouts {

/// What the event of a key carries: the keys that are the same in every layout included. Empty for
/// keys that type nothing. `modifiers` are masks of `platform::eventFlags`.
[[nodiscard]] std::u16string keyText(const KeyTable& table, KeyCode code, std::uint64_t modifiers);

}  // namespace tessarok::layouts
