#include "words/Detector.h"

#include <algorithm>

#include "text/ScratchText.h"
#include "text/Text.h"
#include "words/Alphabet.h"
#include "words/BuiltinPacks.h"
#include "words/Dict.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/Proto.h"
#include "words/ShortFreq.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

using alphabet::Kind;
using Decision = Detector::Decision;
using Confidence = Detector::Confidence;

/// A dictionary word counts by itself from this length on; a shorter one has to be frequent.
constexpr std::size_t kShortestDictWord = 4;
constexpr std::size_t kShortestPrototypeWord = 4;
/// Words below this length say too little to be accepted on an impossible triple.
constexpr std::size_t kShortestImpossibleWord = 6;
constexpr std::size_t kShortestAnchor = 3;
constexpr std::size_t kLongestAnchor = 8;

constexpr double kSwapPlausible = 0.9;
constexpr double kTypedImplausible = 0.4;
constexpr double kAnchoredPlausible = 0.75;
constexpr double kStreakPlausible = 0.9;

/// One conversion under consideration: what was typed, and what the same keys give in the other
/// layout, both in lower case.
struct Candidate {
  std::string_view typed;
  std::string_view swapped;
  /// The language of `swapped`.
  bool russian;
  /// Characters of `swapped`.
  std::size_t length;
  DecisionTrace* trace;

  void note(const char* step) const {
    if (trace != nullptr) trace->add(step);
  }
  [[nodiscard]] Decision decision(Confidence confidence) const {
    return {.fromRu = !russian, .confidence = confidence, .trim = 0};
  }
};

void note(DecisionTrace* trace, std::string_view before, std::string_view word,
          std::string_view after) {
  if (trace == nullptr) return;
  trace->add(std::string(before) + "\"" + std::string(word) + "\"" + std::string(after));
}

bool allLetters(std::string_view word) {
  return std::ranges::all_of(text::Characters(word), &text::isLetter);
}

bool protoFavorsSwap(const Candidate& candidate) {
  const bool ru = candidate.russian;
  if (candidate.length < kShortestPrototypeWord) return false;
  if (!Proto::isAvailable(ru) || !Proto::isAvailable(!ru)) return false;
  if (Proto::hasImpossible(candidate.swapped, ru)) return false;
  const double swapped = Proto::plausibility(candidate.swapped, ru);
  const double typed = Proto::plausibility(candidate.typed, !ru);
  return swapped >= kSwapPlausible && typed <= kTypedImplausible;
}

/// Whether an ending of the word is a word by itself, as in compounds and unknown inflections.
bool hasDictAnchor(const Candidate& candidate) {
  const auto& dictionary = Dict::of(candidate.russian);
  const auto longest = std::min(candidate.length, kLongestAnchor);
  for (std::size_t k = kShortestAnchor; k <= longest; ++k) {
    if (dictionary.contains(text::last(candidate.swapped, k))) return true;
  }
  return false;
}

/// What the dictionary of the other language says: a decision, or absent to go on.
std::optional<Decision> decideByDictionary(const Candidate& candidate) {
  if (!Dict::of(candidate.russian).contains(candidate.swapped)) {
    candidate.note("the conversion is in no dictionary");
    return std::nullopt;
  }
  if (candidate.length >= kShortestDictWord) {
    candidate.note("the conversion is a dictionary word");
    return candidate.decision(Confidence::high);
  }
  if (ShortFreq::of(candidate.russian).contains(candidate.swapped)) {
    candidate.note("the conversion is a frequent short word");
    return candidate.decision(Confidence::high);
  }
  candidate.note("the conversion is a dictionary word, but a rare short one");
  return std::nullopt;
}

/// Whether the typed letters cannot be a word of their own language while the converted ones can
/// be one of theirs.
bool onlySwapIsPossible(const Candidate& candidate) {
  const bool ru = candidate.russian;
  return candidate.length >= kShortestImpossibleWord && Proto::isAvailable(ru) &&
         Proto::isAvailable(!ru) && Proto::hasImpossible(candidate.typed, !ru) &&
         !Proto::hasImpossible(candidate.swapped, ru);
}

/// An impossible word whose conversion looks right and ends in a word.
std::optional<Decision> decideByImpossibility(const Candidate& candidate) {
  if (!onlySwapIsPossible(candidate)) return std::nullopt;
  candidate.note("no word of the typed language has these letters in a row");
  if (Proto::plausibility(candidate.swapped, candidate.russian) < kAnchoredPlausible) {
    candidate.note("the conversion does not look like a word either");
    return std::nullopt;
  }
  if (!hasDictAnchor(candidate)) {
    candidate.note("no ending of the conversion is a word");
    return std::nullopt;
  }
  candidate.note("the conversion ends in a dictionary word");
  return candidate.decision(Confidence::medium);
}

/// In a run of Russian words, a plausible Russian word that ends in a word.
std::optional<Decision> decideByStreak(const Candidate& candidate) {
  if (candidate.length < kShortestDictWord || !Proto::isAvailable(true)) return std::nullopt;
  if (Proto::hasImpossible(candidate.swapped, true)) return std::nullopt;
  if (Proto::plausibility(candidate.swapped, true) < kStreakPlausible) return std::nullopt;
  if (!hasDictAnchor(candidate)) return std::nullopt;
  candidate.note("Russian words came before, and the conversion looks like one and ends in one");
  return candidate.decision(Confidence::medium);
}

std::optional<Decision> decideByEvidence(const Candidate& candidate, bool inRussianStreak) {
  if (const auto found = decideByDictionary(candidate)) return found;
  if (protoFavorsSwap(candidate)) {
    candidate.note("the letters look wrong as typed and right when converted");
    return candidate.decision(Confidence::medium);
  }
  if (const auto found = decideByImpossibility(candidate)) return found;
  if (candidate.russian && inRussianStreak) {
    if (const auto found = decideByStreak(candidate)) return found;
  }
  candidate.note("nothing confirms the conversion");
  return std::nullopt;
}

/// The counts that say which way a word could be converted.
struct Letters {
  std::size_t latin = 0;
  std::size_t cyrillic = 0;
  std::size_t all = 0;
  bool hasOther = false;
};

Letters countLetters(std::string_view word) {
  Letters letters;
  for (const auto character : text::Characters(word)) {
    const auto kind = alphabet::kindOf(character);
    if (kind == Kind::other) {
      letters.hasOther = true;
      return letters;
    }
    if (kind == Kind::latin) ++letters.latin;
    if (kind == Kind::cyrillic) ++letters.cyrillic;
    ++letters.all;
  }
  return letters;
}

/// What the words before this one say about it.
struct Context {
  bool inRussianStreak;
  bool inEnglishStreak;
  DecisionTrace* trace;

  void note(const char* step) const {
    if (trace != nullptr) trace->add(step);
  }
};

/// Converts the word and weighs the evidence. `checkTyped`: a word of the typed language stays.
std::optional<Decision> decideSwap(std::string_view word, std::string_view lower, bool toRussian,
                                   bool checkTyped, const Context& context) {
  if (checkTyped && Dict::of(!toRussian).contains(lower)) {
    note(context.trace, "", lower, " is a dictionary word as typed");
    return std::nullopt;
  }
  ScratchText scratch;
  auto converted = scratch.string();
  LayoutMap::appendConverted(word, !toRussian, converted);
  note(context.trace, "the same keys in the other layout give ", converted, "");
  if (!allLetters(converted)) {
    context.note("which is not all letters");
    return std::nullopt;
  }
  auto swapped = scratch.string();
  text::appendLowercased(converted, swapped);
  const Candidate candidate{lower, swapped, toRussian, text::count(swapped), context.trace};
  return decideByEvidence(candidate, context.inRussianStreak);
}

std::optional<Decision> decideLatin(std::string_view word, std::string_view lower,
                                    std::size_t length, const Context& context) {
  const bool isWhitelisted = Detector::shortWhitelist().contains(lower);
  if (length == 2 && !context.inRussianStreak && !isWhitelisted) {
    context.note("two letters are converted only after Russian words, but for a few frequent ones");
    return std::nullopt;
  }
  // Two letters that got here are frequent or stand among Russian words, and say "Russian".
  const bool checkTyped = length > 2;
  return decideSwap(word, lower, true, checkTyped, context);
}

std::optional<Decision> decideCyrillic(std::string_view word, std::string_view lower,
                                       std::size_t length, const Context& context) {
  if (length == 2 && !context.inEnglishStreak) {
    context.note("two letters are converted only after English words");
    return std::nullopt;
  }
  return decideSwap(word, lower, false, true, context);
}

std::optional<Decision> decideCore(std::string_view word, std::string_view lower,
                                   const Context& context) {
  const auto letters = countLetters(word);
  if (letters.hasOther) {
    context.note("it holds a character that is no letter of either layout");
    return std::nullopt;
  }
  if (letters.all < 2) {
    context.note("one character says too little");
    return std::nullopt;
  }
  if (letters.latin > 0 && letters.cyrillic > 0) {
    context.note("it mixes both alphabets");
    return std::nullopt;
  }
  if (letters.latin > 0) return decideLatin(word, lower, letters.all, context);
  if (letters.cyrillic > 0) return decideCyrillic(word, lower, letters.all, context);
  context.note("it holds no letter");
  return std::nullopt;
}

bool isListed(std::string_view lower, DecisionTrace* trace) {
  if (!Detector::isExcluded(lower)) return false;
  note(trace, "", lower, " is on a list of words that are never corrected");
  return true;
}

}  // namespace

const WordSet& Detector::blacklist() {
  static const WordSet words = {
      "вк", "тф", "рф", "фб", "тв", "пк", "см", "др", "ок", "сс", "хз", "ща", "че", "чё", "бл",
      "мб", "оо", "аа", "не", "но", "на", "ну", "to", "go", "no", "on", "in", "it", "is", "as",
      "at", "an", "or", "ok", "vk", "tv", "pc", "id", "ip", "pr", "hr", "ui", "ux", "os", "we",
      "he", "me", "my", "us", "up", "so", "do", "by", "if", "of", "am", "be"};
  return words;
}

const WordSet& Detector::shortWhitelist() {
  // на, он, по, но, от, до, ни, со, ко, ой, не, ну, да, вы, ты
  static const WordSet words = {"yf", "jy", "gj", "yj", "jn", "lj", "yb", "cj",
                                "rj", "jq", "yt", "ye", "lf", "ds", "ns"};
  return words;
}

const char* Detector::name(Confidence confidence) {
  return confidence == Confidence::high ? "high" : "medium";
}

bool Detector::isExcluded(std::string_view lower) {
  const auto isListedAs = [](std::string_view word) {
    return blacklist().contains(word) || IgnoreList::words().contains(word) ||
           IgnoreList::sessionWords().contains(word) || UserDict::words().contains(word) ||
           BuiltinPacks::words().contains(word);
  };
  if (text::isSurelyComposed(lower)) return isListedAs(lower);
  return isListedAs(text::composed(lower));
}

std::optional<Decision> Detector::decide(std::string_view word, std::int64_t streak,
                                         std::int64_t enStreak, DecisionTrace* trace) {
  const Context context{streak > 0, enStreak > 0, trace};
  if (!LayoutMap::isAvailable()) {
    context.note("the keyboard layouts could not be read");
    return std::nullopt;
  }
  if (!Dict::areAvailable()) {
    context.note("a dictionary is missing");
    return std::nullopt;
  }
  ScratchText scratch;
  auto lowered = scratch.string();
  text::appendLowercased(word, lowered);
  std::string_view lower = lowered;
  if (isListed(lower, trace)) return std::nullopt;
  auto decision = decideCore(word, lower, context);
  for (std::size_t trim = 1; !decision; ++trim) {
    if (!LayoutMap::isRussianLetterKey(text::lastCharacter(word))) return std::nullopt;
    word = text::withoutLast(word, 1);
    lower = text::withoutLast(lower, 1);
    note(trace, "once more without the punctuation at the end: ", word, "");
    if (isListed(lower, trace)) return std::nullopt;
    decision = decideCore(word, lower, context);
    if (decision) decision->trim = trim;
  }
  // What a dictionary did not know because it went meanwhile is no reason to convert.
  if (!Dict::areAvailable()) return std::nullopt;
  return decision;
}

}  // namespace tessarok
