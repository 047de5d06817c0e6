#pragma once

#include <string_view>

namespace tessarok::alphabet {

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

}  // namespace tessarok::alphabet
