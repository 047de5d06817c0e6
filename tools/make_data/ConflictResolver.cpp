#include "ConflictResolver.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <map>
#include <sstream>

#include "KeyText.h"

namespace tessarok::makedata {

namespace {

/// A word that no table holds is still typed now and then.
constexpr double kUnseen = 0.02;
/// Dropping a word makes every use of it a false fix, so only a word as rare as this may go, and
/// only for one that is frequent enough for its own misses to be noticed.
constexpr double kRare = 0.6;
constexpr double kWorthFixingEnglish = 100;
/// An English word goes for a Russian one that is so many times as frequent. A false fix costs a
/// person three repairs; a miss costs one, where one sentence in ten begins in the wrong layout and
/// one word in seven is the first, behind which the layout is right.
constexpr double kFarMoreFrequent = 200;
/// What a table does not hold is still typed as often as this.
constexpr double kLeastEnglish = 0.05;
/// A Russian word with a letter on a punctuation key is never converted when it is typed in the
/// Russian layout; without it in the dictionary it is only missed from the wrong one, and there
/// only as one of the first words of a sentence. So it goes for far less than its own weight.
constexpr double kMissPerFalseFix = 0.05;
constexpr std::size_t kShortestRun = 4;
/// A long word whose letters and ending say enough need not be in a dictionary, which has room for
/// better.
constexpr std::size_t kShortestNeedless = 15;
constexpr int kMostRounds = 8;

/// Letter groups that are usual enough, per million words, for an unknown name to consist of them,
/// and the length of such names.
constexpr double kUsualGroup = 50;
constexpr std::size_t kShortestLookalike = 4;
constexpr std::size_t kLongestLookalike = 6;

/// What people type around a word without a space, in key spelling, and how often.
struct Affix {
  std::string_view keys;
  double share;
};

constexpr std::array kHeads = {Affix{"", 1}, Affix{"'", 0.01}, Affix{"[", 0.001},
                               Affix{",", 0.00002}};
constexpr std::array kTails = {
    Affix{".", 0.04},   Affix{",", 0.05},     Affix{";", 0.01},     Affix{"'", 0.01},
    Affix{"]", 0.002},  Affix{".'", 0.01},    Affix{",'", 0.005},   Affix{"'.", 0.003},
    Affix{"',", 0.003}, Affix{"...", 0.003},  Affix{"].", 0.001},   Affix{"],", 0.001},
    Affix{"'s", 0.01},  Affix{"'d", 0.0005},  Affix{"'ll", 0.0005}, Affix{"'re", 0.0003},
    Affix{"", 1},       Affix{"'ve", 0.0003}, Affix{"';", 0.001},   Affix{".;", 0.0005},
    Affix{"..", 0.001}, Affix{"'s.", 0.0005}, Affix{"'s,", 0.0005}};

/// A person's initials, "R.C." or "K.R": each pair of letters is typed so often, per million words.
constexpr double kInitials = 0.5;

std::vector<std::string> initials() {
  std::vector<std::string> all;
  for (char first = 'a'; first <= 'z'; ++first) {
    for (char second = 'a'; second <= 'z'; ++second) {
      const std::string pair = {first, '.', second};
      all.push_back(pair);
      all.push_back(pair + '.');
    }
  }
  return all;
}

std::string number(double value) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(2) << value;
  return out.str();
}

std::string written(const std::string& keys, bool russian) {
  return russian ? russianOf(keys) : keys;
}

std::vector<std::string> sorted(const std::unordered_set<std::string>& words) {
  std::vector<std::string> list(words.begin(), words.end());
  std::ranges::sort(list);
  return list;
}

}  // namespace

double ConflictResolver::weightOf(const std::string& keys, bool russian) const {
  const auto& weights = russian ? russianWeights_ : englishWeights_;
  const auto found = weights.find(keys);
  return found == weights.end() ? 0 : found->second;
}

void ConflictResolver::drop(const std::string& keys, bool russian, const std::string& why) {
  auto& language = russian ? russian_ : english_;
  language.words.erase(keys);
  language.shortWords.erase(keys);
  findings_.push_back({written(keys, russian),
                       "dropped (" + number(weightOf(keys, russian)) + " per million): " + why});
}

void ConflictResolver::resolvePairs() {
  for (const auto& keys : sorted(english_.words)) {
    if (!russian_.words.contains(keys)) continue;
    const double english = weightOf(keys, false);
    const double russian = weightOf(keys, true);
    const auto against = [&](bool other) {
      return "the keys of " + written(keys, other) + " (" + number(weightOf(keys, other)) + ")";
    };
    // Two letters are only ever converted next to English words, so nothing is lost in Russian
    // text.
    // Runs of one letter are in both on purpose.
    if (keys.size() >= kShortestRun && keys.find_first_not_of(keys[0]) == std::string::npos)
      continue;
    const bool isFreeToGo = keys.size() == 2 && english > russian;
    if (isFreeToGo || (russian < kRare && english >= kWorthFixingEnglish)) {
      drop(keys, true, against(false));
    } else if (std::max(english, kLeastEnglish) * kFarMoreFrequent < russian) {
      drop(keys, false, against(true));
    } else if (keys.size() > 1) {
      findings_.push_back({written(keys, true) + " = " + keys,
                           "both kept (" + number(russian) + ", " + number(english) +
                               " per million): neither is fixed"});
    }
  }
}

void ConflictResolver::dropLookalikes(bool russian) {
  // What no dictionary holds, such as a name, must not turn into a word that nobody types.
  const auto& own = russian ? russian_ : english_;
  const auto& other = russian ? english_ : russian_;
  auto usual = other.ngrams;
  usual.setFloors({kUsualGroup, kUsualGroup});
  for (const auto& keys : sorted(own.words)) {
    if (keys.size() < kShortestLookalike || keys.size() > kLongestLookalike) continue;
    if (weightOf(keys, russian) > 0 || other.words.contains(keys)) continue;
    if (russian && std::ranges::any_of(keys, isPunctuationKey)) continue;
    if (usual.hasImpossible(keys)) continue;
    drop(keys, russian, "unknown, and its keys " + written(keys, !russian) + " could be a name");
  }
}

std::vector<ConflictResolver::Typed> ConflictResolver::findHarmful() const {
  const DecisionModel model(english_, russian_);
  std::vector<Typed> harmful;
  for (const auto& word : sorted(english_.words)) {
    const double weight = std::max(weightOf(word, false), kUnseen);
    for (const auto& head : kHeads) {
      for (const auto& tail : kTails) {
        if (head.keys.empty() && tail.keys.empty()) continue;
        auto typed = std::string(head.keys) + word;
        typed += tail.keys;
        if (model.typedInEnglish(typed).reason == DecisionModel::Reason::none) continue;
        harmful.push_back({std::move(typed), weight * head.share * tail.share});
      }
    }
  }
  for (auto& typed : initials()) {
    if (model.typedInEnglish(typed).reason == DecisionModel::Reason::none) continue;
    harmful.push_back({std::move(typed), kInitials});
  }
  return harmful;
}

bool ConflictResolver::dropHarmful(const std::vector<Typed>& harmful) {
  struct Harm {
    double weight = 0;
    double worst = 0;
    std::string example;
  };
  const DecisionModel model(english_, russian_);
  std::map<std::string, Harm> harms;
  for (const auto& typed : harmful) {
    const auto decision = model.typedInEnglish(typed.keys);
    auto culprits = decision.endings;
    if (decision.reason == DecisionModel::Reason::word) culprits.push_back(decision.converted);
    for (const auto& culprit : culprits) {
      auto& harm = harms[culprit];
      harm.weight += typed.weight;
      if (typed.weight <= harm.worst) continue;
      harm.worst = typed.weight;
      harm.example = typed.keys;
    }
  }
  bool changed = false;
  for (const auto& [keys, harm] : harms) {
    const double own = weightOf(keys, true);
    const bool isSafe = std::ranges::any_of(keys, isPunctuationKey);
    const bool isWorthIt =
        isSafe ? own * kMissPerFalseFix < harm.weight : own < kRare && own < harm.weight;
    if (!isWorthIt) continue;
    drop(keys, true,
         "English " + harm.example + " and the like (" + number(harm.weight) + ") would become " +
             russianOf(harm.example));
    changed = true;
  }
  return changed;
}

void ConflictResolver::dropNeedless() {
  const DecisionModel model(english_, russian_);
  std::vector<std::string> needless;
  // None of them is an ending that another hangs on.
  for (const auto& keys : russian_.words) {
    if (keys.size() < kShortestNeedless || weightOf(keys, true) >= kUnseen) continue;
    if (model.wouldBecomeRussian(keys) && !model.wouldBecomeEnglish(keys)) {
      needless.push_back(keys);
    }
  }
  for (const auto& keys : needless)
    russian_.words.erase(keys);
}

void ConflictResolver::resolve() {
  resolvePairs();
  dropLookalikes(true);
  dropLookalikes(false);
  // Dropping words never makes another conversion, so only what is harmful now is looked at again.
  const auto harmful = findHarmful();
  int round = 0;
  while (round < kMostRounds && dropHarmful(harmful))
    ++round;
  dropNeedless();
}

}  // namespace tessarok::makedata
