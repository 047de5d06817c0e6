#include "MissRule.h"

#include <string>

#include "SentenceTypist.h"
#include "desktops/layouts/KeyTable.h"
#include "text/Text.h"
#include "words/Letters.h"

namespace tessarok::measure {

namespace {

using layouts::KeyTable;

/// The program is paused for five seconds.
constexpr auto kKeysOfPause = static_cast<std::size_t>(5 / SentenceTypist::kKeyInterval);

/// The characters of the key beside the 1.
bool pausesProgram(std::string_view character) {
  return character == "ё" || character == "Ё" || character == "`" || character == "~";
}

/// Whether the key of an English punctuation character types a Russian letter.
bool isLetterInRussian(std::string_view character) {
  const auto scalar = text::singleScalar(character);
  const auto stroke = scalar ? KeyTable::english().strokeFor(*scalar) : std::nullopt;
  if (!stroke) return false;
  const auto russian = KeyTable::russian().character(stroke->code, stroke->shift);
  std::string letter;
  if (russian) text::appendScalar(*russian, letter);
  return letters::languageOf(letter) == Language::russian;
}

}  // namespace

const char* nameOf(MissRule rule) {
  switch (rule) {
    case MissRule::pause:
      return "pause";
    case MissRule::punctuation:
      return "punctuation";
    case MissRule::twoLetters:
      return "twoLetters";
    case MissRule::other:
      return "other";
  }
  return "";
}

const char* describe(MissRule rule) {
  switch (rule) {
    case MissRule::pause:
      return "has a character of the key that pauses the program (ё, `), or follows one closely";
    case MissRule::punctuation:
      return "has punctuation that is a letter in the other layout";
    case MissRule::twoLetters:
      return "two letters without a longer word right behind them";
    case MissRule::other:
      return "any other word";
  }
  return "";
}

MissRule missRuleOf(std::string_view sentence, std::size_t start, std::size_t length) {
  std::size_t place = 0;
  std::size_t letters = 0;
  bool hasPunctuation = false;
  bool isRussian = false;
  for (const auto character : text::Characters(sentence)) {
    if (place >= start + length) break;
    if (place + kKeysOfPause >= start && pausesProgram(character)) return MissRule::pause;
    if (place++ < start) continue;
    const auto language = letters::languageOf(character);
    if (language) {
      ++letters;
    } else {
      hasPunctuation = hasPunctuation || isLetterInRussian(character);
    }
    isRussian = isRussian || language == Language::russian;
  }
  if (hasPunctuation && !isRussian) return MissRule::punctuation;
  return letters == 2 ? MissRule::twoLetters : MissRule::other;
}

}  // namespace tessarok::measure
