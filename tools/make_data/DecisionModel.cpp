#include "DecisionModel.h"

#include <algorithm>
#include <array>

#include "KeyText.h"

namespace tessarok::makedata {

namespace {

// The rules' own numbers.
constexpr std::size_t kShortestDictWord = 4;
constexpr std::size_t kShortestLetterWord = 4;
constexpr std::size_t kShortestImpossibleWord = 6;
constexpr std::size_t kShortestEnding = 3;
constexpr std::size_t kLongestEnding = 8;
constexpr double kConvertedPlausible = 0.9;
constexpr double kTypedImplausible = 0.4;
constexpr double kPlausibilityGap = 0.4;
constexpr double kAnchoredPlausible = 0.75;

/// Pairs that are converted into Russian whatever the dictionaries say.
constexpr std::array kWhitelist = {"yf", "jy", "gj", "yj", "jn", "lj", "yb", "cj",
                                   "rj", "jq", "yt", "ye", "lf", "ds", "ns"};

bool isWhitelisted(std::string_view keys) {
  return std::ranges::any_of(kWhitelist, [keys](std::string_view pair) { return pair == keys; });
}

std::vector<std::string> endingsIn(std::string_view keys,
                                   const std::unordered_set<std::string>& words) {
  std::vector<std::string> endings;
  for (std::size_t k = kShortestEnding; k <= std::min(keys.size(), kLongestEnding); ++k) {
    std::string ending(keys.substr(keys.size() - k));
    if (words.contains(ending)) endings.push_back(std::move(ending));
  }
  return endings;
}

}  // namespace

DecisionModel::Decision DecisionModel::withoutDictionary(const std::string& word,
                                                         bool toRussian) const {
  const auto& typed = toRussian ? english_ : russian_;
  const auto& other = toRussian ? russian_ : english_;
  if (word.size() < kShortestLetterWord || other.ngrams.hasImpossible(word)) return {};
  const double converted = other.ngrams.plausibility(word);
  const double asTyped = typed.ngrams.plausibility(word);
  if (converted >= kConvertedPlausible && asTyped <= kTypedImplausible &&
      converted - asTyped >= kPlausibilityGap) {
    return {Reason::letters, word, {}};
  }
  if (word.size() < kShortestImpossibleWord || converted < kAnchoredPlausible) return {};
  if (!typed.ngrams.hasImpossible(word)) return {};
  auto endings = endingsIn(word, other.words);
  if (endings.empty()) return {};
  return {Reason::ending, word, std::move(endings)};
}

DecisionModel::Decision DecisionModel::withoutTrimming(std::string_view keys,
                                                       bool toRussian) const {
  const auto& typed = toRussian ? english_ : russian_;
  const auto& other = toRussian ? russian_ : english_;
  const std::string word(keys);
  const bool listed = toRussian && isWhitelisted(keys);
  if (keys.size() < 2 || (keys.size() == 2 && !listed)) return {};
  if (toRussian && std::ranges::all_of(keys, isPunctuationKey)) return {};
  if (!listed && typed.words.contains(word)) return {};
  if (!toRussian && std::ranges::any_of(keys, isPunctuationKey)) return {};
  if (other.words.contains(word) &&
      (keys.size() >= kShortestDictWord || other.shortWords.contains(word))) {
    return {Reason::word, word, {}};
  }
  return withoutDictionary(word, toRussian);
}

DecisionModel::Decision DecisionModel::typedInEnglish(std::string_view keys) const {
  for (;;) {
    auto decision = withoutTrimming(keys, true);
    if (decision.reason != Reason::none || keys.empty() || !isPunctuationKey(keys.back())) {
      return decision;
    }
    keys.remove_suffix(1);
  }
}

DecisionModel::Decision DecisionModel::typedInRussian(std::string_view keys) const {
  return withoutTrimming(keys, false);
}

bool DecisionModel::wouldBecomeRussian(std::string_view keys) const {
  const std::string word(keys);
  return !english_.words.contains(word) && withoutDictionary(word, true).reason != Reason::none;
}

bool DecisionModel::wouldBecomeEnglish(std::string_view keys) const {
  if (std::ranges::any_of(keys, isPunctuationKey)) return false;
  const std::string word(keys);
  return english_.words.contains(word) || withoutDictionary(word, false).reason != Reason::none;
}

}  // namespace tessarok::makedata
