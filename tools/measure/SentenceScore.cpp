#include "SentenceScore.h"

#include <algorithm>

#include "text/Text.h"

namespace tessarok::measure {

namespace {

struct Word {
  std::string meant;
  std::string shown;
  std::size_t start = 0;
  std::size_t length = 0;
  std::size_t letters = 0;
  bool lettersRight = true;
};

/// The words of the meant text with what stands in their places on the screen: a fix changes
/// Characters but never their number.
std::vector<Word> alignedWords(std::string_view meant, std::string_view shown) {
  std::vector<Word> words(1);
  auto place = text::Characters(shown).begin();
  std::size_t start = 0;
  for (const auto character : text::Characters(meant)) {
    const auto there = place == text::Characters::end() ? std::string_view() : *place;
    if (place != text::Characters::end()) ++place;
    ++start;
    if (character == " ") {
      words.emplace_back().start = start;
      continue;
    }
    auto& word = words.back();
    ++word.length;
    word.meant += character;
    word.shown += there;
    if (!text::isLetter(character)) continue;
    ++word.letters;
    word.lettersRight = word.lettersRight && character == there;
  }
  return words;
}

/// Without the quotes, brackets and dashes before the first letter.
std::string withoutHead(std::string_view word) {
  constexpr std::string_view kHeads = "\"'([<-";
  return std::string(word.substr(std::min(word.find_first_not_of(kHeads), word.size())));
}

}  // namespace

SentenceScore scoreSentence(std::string_view meant, std::string_view shown) {
  SentenceScore score;
  for (auto& word : alignedWords(meant, shown)) {
    if (word.meant.empty()) continue;
    ++score.words;
    if (word.meant != word.shown)
      score.changed.push_back({word.meant, word.shown, MissRule::other});
    if (word.letters == 1) {
      ++score.oneLetterWords;
      if (word.lettersRight) ++score.oneLetterRight;
    }
    if (word.letters < 2) continue;
    ++score.longWords;
    if (score.longWords == 1) score.firstWord = withoutHead(text::lowercased(word.meant));
    if (word.lettersRight) {
      ++score.longRight;
      score.firstRight = score.firstRight || score.longWords == 1;
      score.secondRight = score.secondRight || score.longWords <= 2;
    } else {
      const auto rule = missRuleOf(meant, word.start, word.length);
      score.misses.push_back({std::move(word.meant), std::move(word.shown), rule});
    }
  }
  return score;
}

}  // namespace tessarok::measure
