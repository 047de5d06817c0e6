#pragma once

#include <optional>
#include <string_view>

#include "typing/KeyCodes.h"

/// The keys by the names that browsers give them. Pure functions, any thread.
namespace tessarok::web::keyNames {

/// The key of a `KeyboardEvent.code`; absent for keys that mean nothing to the program. The key
/// beside the left Shift is among these: it gives something else on every keyboard.
[[nodiscard]] std::optional<KeyCode> codeOf(std::string_view name);

}  // namespace tessarok::web::keyNames
