// The rules of `Detector` for words of two letters and for a Shift key held too long.

#include "text/ScratchText.h"
#include "text/Text.h"
#include "words/Detector.h"
#include "words/Dict.h"
#include "words/LayoutMap.h"
#include "words/Letters.h"
#include "words/ShortFreq.h"

namespace tessarok {

namespace {

using letters::Kind;

/// The shortest word whose capitals are looked at.
constexpr std::size_t kShortestShiftLagWord = 4;

/// Whether the word is two Characters of one script and its punctuation keys, one a letter at
/// least.
bool isShortWord(std::string_view word, Kind script) {
  std::size_t length = 0;
  bool hasLetter = false;
  for (const auto character : text::Characters(word)) {
    const auto kind = letters::kindOf(character);
    if (kind != script && kind != Kind::letterKey) return false;
    hasLetter = hasLetter || kind == script;
    ++length;
  }
  return length == 2 && hasLetter;
}

/// Whether the same keys give a frequent short word of the other language.
bool convertsToFrequentWord(std::string_view word, Language to) {
  ScratchText scratch;
  auto converted = scratch.string();
  LayoutMap::appendConverted(word, other(to), converted);
  auto lower = scratch.string();
  text::appendLowercased(converted, lower);
  if (!text::allCharacters(lower, &text::isLetter)) return false;
  return ShortFreq::of(to).contains(std::string_view(lower));
}

/// The word without the punctuation keys at its end.
std::string_view withoutLetterKeys(std::string_view word) {
  while (LayoutMap::isRussianLetterKey(text::lastCharacter(word))) {
    word = text::withoutLast(word, 1);
  }
  return word;
}

/// The language that all Characters of a word are letters of; absent when there is none.
std::optional<Language> languageOf(std::string_view word) {
  const auto language = letters::languageOf(text::firstCharacter(word));
  const bool isUniform = text::allCharacters(
      word, [&](std::string_view character) { return letters::languageOf(character) == language; });
  return isUniform ? language : std::nullopt;
}

/// Two capitals, then only small letters.
bool hasTwoLeadingCapitals(std::string_view word) {
  std::size_t position = 0;
  for (const auto character : text::Characters(word)) {
    const bool fits = position < 2 ? text::isUppercase(character) : text::isLowercase(character);
    if (!fits) return false;
    ++position;
  }
  return true;
}

std::string withSecondLowered(std::string_view word) {
  const auto first = text::firstCharacter(word);
  const auto second = text::firstCharacter(word.substr(first.size()));
  std::string fixed(first);
  fixed += text::lowercased(second);
  fixed += word.substr(first.size() + second.size());
  return fixed;
}

bool isExcludedInLowerCase(std::string_view word) {
  ScratchText scratch;
  auto lower = scratch.string();
  text::appendLowercased(word, lower);
  return Detector::isExcluded(lower);
}

}  // namespace

bool Detector::isShortRuCandidate(std::string_view word) {
  if (!isShortWord(word, Kind::latin)) return false;
  ScratchText scratch;
  auto lower = scratch.string();
  text::appendLowercased(word, lower);
  if (isExcluded(lower)) return false;
  return shortWhitelist().contains(std::string_view(lower)) ||
         convertsToFrequentWord(word, Language::russian);
}

bool Detector::isShortEnCandidate(std::string_view word) {
  if (!isShortWord(word, Kind::cyrillic)) return false;
  ScratchText scratch;
  auto lower = scratch.string();
  text::appendLowercased(word, lower);
  const auto misses = Dict::misses();
  if (isExcluded(lower) || Dict::ru().contains(std::string_view(lower))) return false;
  return Dict::misses() == misses && convertsToFrequentWord(word, Language::english);
}

std::optional<std::string> Detector::fixShiftLag(std::string_view word) {
  const auto core = withoutLetterKeys(word);
  // Most words start with one capital at most; they are told apart before any list is asked.
  if (core.empty() || !hasTwoLeadingCapitals(core)) return std::nullopt;
  if (text::count(core) < kShortestShiftLagWord) return std::nullopt;
  if (isExcludedInLowerCase(word) || isExcludedInLowerCase(core)) return std::nullopt;
  const auto language = languageOf(core);
  if (!language) return std::nullopt;
  auto fixed = withSecondLowered(core);
  if (!Dict::of(*language).contains(text::lowercased(fixed))) return std::nullopt;
  return fixed.append(word.substr(core.size()));
}

}  // namespace tessarok
