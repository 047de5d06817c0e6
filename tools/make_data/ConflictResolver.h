#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "DecisionModel.h"

namespace tessarok::makedata {

/// Words in key spelling to times per million.
using Weights = std::unordered_map<std::string, double>;

/// Finds the words of both languages that get in each other's way and drops those that people
/// hardly type.
class ConflictResolver final {
 public:
  /// Something that was done, or left, about a word.
  struct Finding {
    /// The Russian or English word as it is written.
    std::string word;
    /// Such as "dropped: the keys of English if (1904.2 per million)".
    std::string what;
  };

  ConflictResolver(LanguageModel& english, LanguageModel& russian, const Weights& englishWeights,
                   const Weights& russianWeights)
      : english_(english),
        russian_(russian),
        englishWeights_(englishWeights),
        russianWeights_(russianWeights) {}

  void resolve();

  [[nodiscard]] const std::vector<Finding>& findings() const { return findings_; }

 private:
  /// What a person types in the English layout, in key spelling, and how often.
  struct Typed {
    std::string keys;
    double weight;
  };

  void resolvePairs();
  void dropLookalikes(bool russian);
  [[nodiscard]] std::vector<Typed> findHarmful() const;
  bool dropHarmful(const std::vector<Typed>& harmful);
  void dropNeedless();
  void drop(const std::string& keys, bool russian, const std::string& why);
  [[nodiscard]] double weightOf(const std::string& keys, bool russian) const;

  LanguageModel& english_;
  LanguageModel& russian_;
  const Weights& englishWeights_;
  const Weights& russianWeights_;
  std::vector<Finding> findings_;
};

}  // namespace tessarok::makedata
