#pragma once

#include <cstdint>
#include <fcitx-utils/key.h>
#include <string>

#include "typing/KeyCodes.h"

/// The keys of Fcitx in the corrector's words. Pure functions.
namespace tessarok::fcitx5::keyNames {

/// The hardware code, by the key code and, where programs send none, by the symbol.
[[nodiscard]] KeyCode codeOf(const fcitx::Key& key);
/// Modifiers as masks of `platform::eventFlags`.
[[nodiscard]] std::uint64_t flagsOf(fcitx::KeyStates states);
/// What a key types, in UTF-16 units; empty for keys that type nothing, dead keys included.
[[nodiscard]] std::u16string payloadOf(const fcitx::Key& key);
/// Whether a key types a character that can be seen, or a space.
[[nodiscard]] bool isPrintable(const fcitx::Key& key);
/// Modifiers, locks and keys that switch layouts: they type nothing and move nothing.
[[nodiscard]] bool isModifier(const fcitx::Key& key);

}  // namespace tessarok::fcitx5::keyNames
