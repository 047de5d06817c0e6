#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "words/DecisionTrace.h"
#include "words/Language.h"
#include "words/WordSet.h"

namespace tessarok {

/// Decides whether one typed word was typed in the wrong layout. Conservative: whatever is not
/// positively confirmed is left alone. Keeps no state between calls. Main thread.
class Detector {
 public:
  /// What speaks for a conversion.
  enum class Confidence {
    /// The converted word is in a dictionary.
    high,
    /// The letters of both words speak for the conversion.
    medium,
  };
  /// How a word is to be converted.
  struct Decision {
    /// What the word becomes; it was typed on the layout of the other language.
    Language to = Language::russian;
    Confidence confidence = Confidence::high;
    /// So many Characters at the end of the word stay as typed.
    std::size_t trim = 0;

    [[nodiscard]] Language from() const { return other(to); }
    bool operator==(const Decision&) const = default;
  };

  Detector() = delete;

  /// Words of two letters, in both alphabets, that are never converted.
  [[nodiscard]] static const WordSet& blacklist();
  /// English typings of Russian words of two letters that may be converted all the same.
  [[nodiscard]] static const WordSet& shortWhitelist();

  /// Whether and how to convert `word`, given as typed; absent: leave it. The streaks are the
  /// lengths of the runs of Russian and English words before it.
  [[nodiscard]] static std::optional<Decision> decide(std::string_view word, std::int64_t streak,
                                                      std::int64_t enStreak,
                                                      DecisionTrace* trace = nullptr);
  /// Whether a list of words that are never corrected is still being read; until then every word
  /// may be on it.
  [[nodiscard]] static bool isWaitingForLists();
  /// Whether a lower-case word is on any list of words that are never corrected.
  [[nodiscard]] static bool isExcluded(std::string_view lower);

  /// Whether two Characters typed on the English layout stand for a Russian word.
  [[nodiscard]] static bool isShortRuCandidate(std::string_view word);
  /// Whether two Characters typed on the Russian layout stand for an English word.
  [[nodiscard]] static bool isShortEnCandidate(std::string_view word);
  /// The word with its second letter in lower case when Shift was held one letter too long
  /// ("ПРивет"); absent when it was not.
  [[nodiscard]] static std::optional<std::string> fixShiftLag(std::string_view word);

  /// "high" or "medium".
  [[nodiscard]] static const char* name(Confidence confidence);
};

}  // namespace tessarok
