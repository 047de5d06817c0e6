#pragma once

#include <cstdint>
#include <string>

#include "desktops/inputmethod/Key.h"
#include "typing/KeyCodes.h"

/// The keys of input methods in the corrector's words. Pure functions.
namespace tessarok::inputmethod::keyNames {

/// The hardware code, by the key code and, where programs send none, by the symbol.
[[nodiscard]] KeyCode codeOf(const Key& key);
/// Modifiers as masks of `platform::eventFlags`.
[[nodiscard]] std::uint64_t flagsOf(std::uint32_t states);
/// What a key types, in UTF-16 units; empty for keys that type nothing, dead keys included.
[[nodiscard]] std::u16string payloadOf(const Key& key);
/// What a key types, in UTF-8; empty for keys that type nothing that can be seen.
[[nodiscard]] std::string textOf(const Key& key);
/// Whether a key types a character that can be seen, or a space.
[[nodiscard]] bool isPrintable(const Key& key);
/// Modifiers, locks and keys that switch layouts: they type nothing and move nothing.
[[nodiscard]] bool isModifier(const Key& key);

}  // namespace tessarok::inputmethod::keyNames
