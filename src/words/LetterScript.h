#pragma once

#include <optional>
#include <string_view>

namespace tessarok {

/// The language whose layout a text belongs to: Russian (true) with any letter beyond ASCII,
/// English (false) with ASCII letters only, absent without letters.
[[nodiscard]] std::optional<bool> russianByLetters(std::string_view text);

/// Whether the text has letters and all of them are ASCII (`ascii`), or none of them is.
[[nodiscard]] bool hasOnlyLettersOf(std::string_view text, bool ascii);

}  // namespace tessarok
