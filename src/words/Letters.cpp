#include "words/Letters.h"

#include "text/Text.h"
#include "words/LayoutMap.h"

namespace tessarok::letters {

namespace {

/// What is no ASCII letter was typed on the Russian layout, whatever its alphabet.
Language scriptOf(std::string_view letter) {
  return text::isAsciiLetter(letter) ? Language::english : Language::russian;
}

}  // namespace

Kind kindOf(std::string_view character) {
  const auto scalar = text::singleScalar(character);
  if (!scalar) return Kind::other;
  const auto c = *scalar;
  if ((c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z')) return Kind::latin;
  if ((c >= U'А' && c <= U'я') || c == U'Ё' || c == U'ё') return Kind::cyrillic;
  return LayoutMap::russianLetterKeys().contains(c) ? Kind::letterKey : Kind::other;
}

std::optional<Language> languageOf(std::string_view character) {
  switch (kindOf(character)) {
    case Kind::latin:
      return Language::english;
    case Kind::cyrillic:
      return Language::russian;
    default:
      return std::nullopt;
  }
}

std::optional<Language> layoutOf(std::string_view text) {
  std::optional<Language> answer;
  for (const auto character : text::Characters(text)) {
    if (!text::isLetter(character)) continue;
    answer = scriptOf(character);
    if (answer == Language::russian) break;
  }
  return answer;
}

bool areAllOf(Language language, std::string_view text) {
  bool any = false;
  for (const auto character : text::Characters(text)) {
    if (!text::isLetter(character)) continue;
    if (scriptOf(character) != language) return false;
    any = true;
  }
  return any;
}

}  // namespace tessarok::letters
