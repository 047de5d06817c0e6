#pragma once

#include <string>
#include <string_view>

namespace tessarok::makedata {

/// Words as the keys that type them: a Russian word is spelled by the characters that its keys give
/// in the English layout, without Shift. Words of both languages that share their keys are then
/// equal, and a full stop or comma behind an English word is the letter that it would become.

/// The 26 letters and the seven punctuation keys that carry Russian letters.
inline constexpr std::string_view kKeys = "abcdefghijklmnopqrstuvwxyz`[];',.";

/// The keys of a lower-case Russian word in UTF-8. A word with another character is a mistake of
/// the caller: std::invalid_argument.
[[nodiscard]] std::string keysOf(std::string_view russian);

/// The Russian word that the keys type.
[[nodiscard]] std::string russianOf(std::string_view keys);

/// Whether the key types a punctuation character in the English layout.
[[nodiscard]] bool isPunctuationKey(char key);

}  // namespace tessarok::makedata
