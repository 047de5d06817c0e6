#include "words/LetterScript.h"

#include "text/Text.h"

namespace tessarok {

std::optional<bool> russianByLetters(std::string_view text) {
  std::optional<bool> answer;
  for (const auto character : text::Characters(text)) {
    if (!text::isLetter(character)) continue;
    if (!text::isAsciiLetter(character)) return true;
    answer = false;
  }
  return answer;
}

bool hasOnlyLettersOf(std::string_view text, bool ascii) {
  bool any = false;
  for (const auto character : text::Characters(text)) {
    if (!text::isLetter(character)) continue;
    if (text::isAsciiLetter(character) != ascii) return false;
    any = true;
  }
  return any;
}

}  // namespace tessarok
