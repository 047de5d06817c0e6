#include "words/Alphabet.h"

#include "text/Text.h"
#include "words/LayoutMap.h"

namespace tessarok::alphabet {

Kind kindOf(std::string_view character) {
  const auto scalar = text::singleScalar(character);
  if (!scalar) return Kind::other;
  const auto c = *scalar;
  if ((c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z')) return Kind::latin;
  if ((c >= U'А' && c <= U'я') || c == U'Ё' || c == U'ё') return Kind::cyrillic;
  return LayoutMap::russianLetterKeys().contains(c) ? Kind::letterKey : Kind::other;
}

}  // namespace tessarok::alphabet
