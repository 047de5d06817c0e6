#include "words/Detector.h"

#include <algorithm>

#include "text/ScratchText.h"
#include "text/Text.h"
#include "words/BuiltinPacks.h"
#include "words/Dict.h"
#include "words/ExcludingList.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/Letters.h"
#include "words/Proto.h"
#include "words/ShortFreq.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

using letters::Kind;
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

/// What the words before this one say about it.
struct Context {
  bool afterRussian;
  bool afterEnglish;
  DecisionTrace* trace;

  template <typename... Pieces>
  void note(const Pieces&... pieces) const {
    DecisionTrace::note(trace, pieces...);
  }
};

/// One conversion under consideration: what was typed, and what the same keys give in the other
/// layout, both in lower case.
struct Candidate {
  std::string_view typed;
  std::string_view swapped;
  /// The language of `swapped`.
  Language to;
  /// Characters of `swapped`.
  std::size_t length;
  const Context& context;

  void note(const char* step) const { context.note(step); }
  [[nodiscard]] Decision decision(Confidence confidence) const {
    return {.to = to, .confidence = confidence, .trim = 0};
  }
};

bool protoFavorsSwap(const Candidate& candidate) {
  const auto to = candidate.to;
  if (candidate.length < kShortestPrototypeWord) return false;
  if (!Proto::isAvailable(to) || !Proto::isAvailable(other(to))) return false;
  if (Proto::hasImpossible(candidate.swapped, to)) return false;
  const double swapped = Proto::plausibility(candidate.swapped, to);
  const double typed = Proto::plausibility(candidate.typed, other(to));
  return swapped >= kSwapPlausible && typed <= kTypedImplausible;
}

/// Whether an ending of the word is a word by itself, as in compounds and unknown inflections.
bool hasDictAnchor(const Candidate& candidate) {
  const auto& dictionary = Dict::of(candidate.to);
  const auto longest = std::min(candidate.length, kLongestAnchor);
  for (std::size_t k = kShortestAnchor; k <= longest; ++k) {
    if (dictionary.contains(text::last(candidate.swapped, k))) return true;
  }
  return false;
}

/// What the dictionary of the other language says: a decision, or absent to go on.
std::optional<Decision> decideByDictionary(const Candidate& candidate) {
  if (!Dict::of(candidate.to).contains(candidate.swapped)) {
    candidate.note("the conversion is in no dictionary");
    return std::nullopt;
  }
  if (candidate.length >= kShortestDictWord) {
    candidate.note("the conversion is a dictionary word");
    return candidate.decision(Confidence::high);
  }
  if (ShortFreq::of(candidate.to).contains(candidate.swapped)) {
    candidate.note("the conversion is a frequent short word");
    return candidate.decision(Confidence::high);
  }
  candidate.note("the conversion is a dictionary word, but a rare short one");
  return std::nullopt;
}

/// Whether the typed letters cannot be a word of their own language while the converted ones can
/// be one of theirs.
bool onlySwapIsPossible(const Candidate& candidate) {
  const auto to = candidate.to;
  return candidate.length >= kShortestImpossibleWord && Proto::isAvailable(to) &&
         Proto::isAvailable(other(to)) && Proto::hasImpossible(candidate.typed, other(to)) &&
         !Proto::hasImpossible(candidate.swapped, to);
}

/// An impossible word whose conversion looks right and ends in a word.
std::optional<Decision> decideByImpossibility(const Candidate& candidate) {
  if (!onlySwapIsPossible(candidate)) return std::nullopt;
  candidate.note("no word of the typed language has these letters in a row");
  if (Proto::plausibility(candidate.swapped, candidate.to) < kAnchoredPlausible) {
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
  if (candidate.to != Language::russian || !candidate.context.afterRussian) return std::nullopt;
  if (candidate.length < kShortestDictWord || !Proto::isAvailable(candidate.to)) {
    return std::nullopt;
  }
  if (Proto::hasImpossible(candidate.swapped, candidate.to)) return std::nullopt;
  if (Proto::plausibility(candidate.swapped, candidate.to) < kStreakPlausible) return std::nullopt;
  if (!hasDictAnchor(candidate)) return std::nullopt;
  candidate.note("Russian words came before, and the conversion looks like one and ends in one");
  return candidate.decision(Confidence::medium);
}

std::optional<Decision> decideByEvidence(const Candidate& candidate) {
  if (const auto found = decideByDictionary(candidate)) return found;
  if (protoFavorsSwap(candidate)) {
    candidate.note("the letters look wrong as typed and right when converted");
    return candidate.decision(Confidence::medium);
  }
  if (const auto found = decideByImpossibility(candidate)) return found;
  if (const auto found = decideByStreak(candidate)) return found;
  candidate.note("nothing confirms the conversion");
  return std::nullopt;
}

/// The counts that say which way a word could be converted.
struct KindCounts {
  std::size_t latin = 0;
  std::size_t cyrillic = 0;
  std::size_t all = 0;
  bool hasOther = false;
};

KindCounts countKinds(std::string_view word) {
  KindCounts counts;
  for (const auto character : text::Characters(word)) {
    const auto kind = letters::kindOf(character);
    if (kind == Kind::other) {
      counts.hasOther = true;
      return counts;
    }
    if (kind == Kind::latin) ++counts.latin;
    if (kind == Kind::cyrillic) ++counts.cyrillic;
    ++counts.all;
  }
  return counts;
}

/// Converts the word and weighs the evidence.
std::optional<Decision> decideSwap(std::string_view word, std::string_view lower, Language to,
                                   const Context& context) {
  ScratchText scratch;
  auto converted = scratch.string();
  LayoutMap::appendConverted(word, other(to), converted);
  context.note("the same keys in the other layout give \"", converted, "\"");
  if (!text::allCharacters(converted, &text::isLetter)) {
    context.note("which is not all letters");
    return std::nullopt;
  }
  auto swapped = scratch.string();
  text::appendLowercased(converted, swapped);
  return decideByEvidence({lower, swapped, to, text::count(swapped), context});
}

/// Whether a word of the language that it was typed in stays for that reason.
bool isWordAsTyped(std::string_view lower, Language typed, const Context& context) {
  if (!Dict::of(typed).contains(lower)) return false;
  context.note("\"", lower, "\" is a dictionary word as typed");
  return true;
}

std::optional<Decision> decideLatin(std::string_view word, std::string_view lower,
                                    std::size_t length, const Context& context) {
  const bool isWhitelisted = Detector::shortWhitelist().contains(lower);
  if (length == 2 && !context.afterRussian && !isWhitelisted) {
    context.note("two letters are converted only after Russian words, but for a few frequent ones");
    return std::nullopt;
  }
  // Two letters that got here are frequent or stand among Russian words, and say "Russian".
  if (length > 2 && isWordAsTyped(lower, Language::english, context)) return std::nullopt;
  return decideSwap(word, lower, Language::russian, context);
}

std::optional<Decision> decideCyrillic(std::string_view word, std::string_view lower,
                                       std::size_t length, const Context& context) {
  if (length == 2 && !context.afterEnglish) {
    context.note("two letters are converted only after English words");
    return std::nullopt;
  }
  if (isWordAsTyped(lower, Language::russian, context)) return std::nullopt;
  return decideSwap(word, lower, Language::english, context);
}

std::optional<Decision> decideCore(std::string_view word, std::string_view lower,
                                   const Context& context) {
  const auto counts = countKinds(word);
  if (counts.hasOther) {
    context.note("it holds a character that is no letter of either layout");
    return std::nullopt;
  }
  if (counts.all < 2) {
    context.note("one character says too little");
    return std::nullopt;
  }
  if (counts.latin > 0 && counts.cyrillic > 0) {
    context.note("it mixes both alphabets");
    return std::nullopt;
  }
  if (counts.latin > 0) return decideLatin(word, lower, counts.all, context);
  if (counts.cyrillic > 0) return decideCyrillic(word, lower, counts.all, context);
  context.note("it holds no letter");
  return std::nullopt;
}

bool isListed(std::string_view lower, const Context& context) {
  if (!Detector::isExcluded(lower)) return false;
  if (context.trace == nullptr) return true;
  const auto list = excludingListOf(text::composed(lower)).value_or("unknown");
  context.note("\"", lower, "\" is on a list of words that are never corrected: ", list);
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

bool Detector::isWaitingForLists() {
  return IgnoreList::isLoading() || UserDict::isLoading() || BuiltinPacks::isLoading();
}

bool Detector::isExcluded(std::string_view lower) {
  const auto isListedAs = [](std::string_view word) {
    return blacklist().contains(word) || IgnoreList::contains(word) || UserDict::contains(word) ||
           BuiltinPacks::contains(word);
  };
  // Any word may be on a list that a slow disk has not given yet.
  if (isWaitingForLists()) return true;
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
  const auto misses = Dict::misses();
  ScratchText scratch;
  auto lowered = scratch.string();
  text::appendLowercased(word, lowered);
  std::string_view lower = lowered;
  if (isListed(lower, context)) return std::nullopt;
  auto decision = decideCore(word, lower, context);
  for (std::size_t trim = 1; !decision; ++trim) {
    if (!LayoutMap::isRussianLetterKey(text::lastCharacter(word))) return std::nullopt;
    word = text::withoutLast(word, 1);
    lower = text::withoutLast(lower, 1);
    context.note("once more without the punctuation at the end: \"", word, "\"");
    if (isListed(lower, context)) return std::nullopt;
    decision = decideCore(word, lower, context);
    if (decision) decision->trim = trim;
  }
  // What a dictionary did not know because it went meanwhile, or because the disk is slow, is no
  // reason to convert.
  if (!Dict::areAvailable() || Dict::misses() != misses) return std::nullopt;
  return decision;
}

}  // namespace tessarok
