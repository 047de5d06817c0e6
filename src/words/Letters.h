#pragma once

#include <optional>
#include <string_view>

#include "words/Language.h"

/// Which language the letters of a typed text are of. Pure functions but for the layout maps, which
/// say what a letter key is; main thread.
namespace tessarok::letters {

/// What a Character of a typed word is to the word decision.
enum class Kind {
  /// A–Z or a–z.
  latin,
  /// А–я, Ё or ё.
  cyrillic,
  /// A key of the English layout that carries a Russian letter, such as the comma.
  letterKey,
  other,
};

[[nodiscard]] Kind kindOf(std::string_view character);
/// The language of a letter of one of the two alphabets; absent for everything else.
[[nodiscard]] std::optional<Language> languageOf(std::string_view character);

/// The language whose layout a whole text belongs to: Russian with any letter beyond ASCII, English
/// with ASCII letters only, absent without letters.
[[nodiscard]] std::optional<Language> layoutOf(std::string_view text);
/// Whether the text has letters and all of them are ASCII (English), or none of them is (Russian).
[[nodiscard]] bool areAllOf(Language language, std::string_view text);

}  // namespace tessarok::letters
