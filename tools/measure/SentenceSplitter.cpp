#include "SentenceSplitter.h"

#include <algorithm>

#include "desktops/layouts/KeyTable.h"
#include "text/Text.h"
#include "words/Letters.h"

namespace tessarok::measure {

namespace {

using layouts::KeyTable;

constexpr std::size_t kFewestWords = 2;
constexpr std::size_t kMostCharacters = 400;
constexpr std::string_view kStops = ".!?";
constexpr std::string_view kClosers = "\")'";
constexpr std::string_view kOpeners = "\"('- ";

/// Where the next sentence starts when one ends just before `position`; npos when none does.
std::size_t nextStart(std::string_view text, std::size_t position) {
  const auto space = text.find_first_not_of(kClosers, position);
  if (space == std::string_view::npos || text[space] != ' ') return std::string_view::npos;
  const auto letter = text.find_first_not_of(kOpeners, space);
  if (letter == std::string_view::npos) return std::string_view::npos;
  return text::isUppercase(text::firstCharacter(text.substr(letter, 8))) ? space + 1
                                                                         : std::string_view::npos;
}

}  // namespace

std::vector<std::string> splitSentences(std::string_view paragraph) {
  std::vector<std::string> sentences;
  std::size_t start = 0;
  for (std::size_t i = 0; i < paragraph.size(); ++i) {
    if (kStops.find(paragraph[i]) == std::string_view::npos) continue;
    const auto next = nextStart(paragraph, i + 1);
    if (next == std::string_view::npos) continue;
    sentences.emplace_back(paragraph.substr(start, next - 1 - start));
    start = next;
    i = next - 1;
  }
  if (start < paragraph.size()) sentences.emplace_back(paragraph.substr(start));
  return sentences;
}

bool isSentenceOf(std::string_view sentence, Language language) {
  const auto& table = KeyTable::of(language);
  std::size_t words = 0;
  std::size_t characters = 0;
  std::size_t lettersInWord = 0;
  for (const auto character : text::Characters(sentence)) {
    if (++characters > kMostCharacters) return false;
    const bool letter = text::isLetter(character);
    if (letter && letters::languageOf(character) != language) return false;
    if (character == " ") {
      lettersInWord = 0;
      continue;
    }
    const auto scalar = text::singleScalar(character);
    if (!scalar || !table.strokeFor(*scalar)) return false;
    if (letter && ++lettersInWord == 2) ++words;
  }
  return words >= kFewestWords;
}

}  // namespace tessarok::measure
