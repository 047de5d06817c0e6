#pragma once

#include <string>
#include <string_view>

namespace tessarok::terminal {

/// The characters of what a key sends; empty when it sends anything that does not print, or is no
/// UTF-8.
[[nodiscard]] std::u32string printedCharacters(std::string_view bytes);

}  // namespace tessarok::terminal
