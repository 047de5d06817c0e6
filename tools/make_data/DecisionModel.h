#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "KeyNgrams.h"

namespace tessarok::makedata {

/// One language's data while they are being made, all words in key spelling (see KeyText.h).
struct LanguageModel {
  std::unordered_set<std::string> words;
  std::unordered_set<std::string> shortWords;
  KeyNgrams ngrams;
};

/// The corrector's word decision on data in the making, for a word outside any run of words. A test
/// holds it against the corrector's own.
class DecisionModel final {
 public:
  /// What makes the corrector convert a word.
  enum class Reason { none, word, letters, ending };
  struct Decision {
    Reason reason = Reason::none;
    /// The converted part, in key spelling.
    std::string converted;
    /// The endings of it that are words, when they are the reason.
    std::vector<std::string> endings;
  };

  DecisionModel(const LanguageModel& english, const LanguageModel& russian)
      : english_(english), russian_(russian) {}

  /// What becomes of keys typed in the English layout, punctuation keys and all.
  [[nodiscard]] Decision typedInEnglish(std::string_view keys) const;
  /// What becomes of keys typed in the Russian layout.
  [[nodiscard]] Decision typedInRussian(std::string_view keys) const;

  /// Whether a Russian word typed in the English layout would become Russian if its dictionary did
  /// not hold it.
  [[nodiscard]] bool wouldBecomeRussian(std::string_view keys) const;
  /// Whether a Russian word typed in its own layout would become English if its dictionary did not
  /// hold it.
  [[nodiscard]] bool wouldBecomeEnglish(std::string_view keys) const;

 private:
  [[nodiscard]] Decision withoutDictionary(const std::string& word, bool toRussian) const;
  [[nodiscard]] Decision withoutTrimming(std::string_view keys, bool toRussian) const;

  const LanguageModel& english_;
  const LanguageModel& russian_;
};

}  // namespace tessarok::makedata
