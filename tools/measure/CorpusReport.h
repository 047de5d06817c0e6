#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "Occasion.h"
#include "SentenceScore.h"
#include "words/Language.h"

namespace tessarok::measure {

/// How often each miss happened: what was meant and what was shown, to the number of times.
using MissCounts = std::map<std::pair<std::string, std::string>, std::size_t>;

/// How often sentences begin with a word, and how often it comes out right from the wrong layout.
struct FirstWord {
  std::size_t times = 0;
  std::size_t right = 0;
};
using FirstWords = std::map<std::string, FirstWord>;

/// What was measured on one corpus, in sums that can be added.
struct CorpusReport {
  std::string name;
  std::string title;
  Language language = Language::english;
  bool isCode = false;
  std::optional<Occasion> occasion;
  std::size_t sentences = 0;
  std::size_t words = 0;
  MissCounts falseFixes;
  std::size_t longWords = 0;
  std::size_t longRight = 0;
  std::size_t oneLetterWords = 0;
  std::size_t oneLetterRight = 0;
  std::size_t firstRight = 0;
  std::size_t secondRight = 0;
  FirstWords firstWords;
  MissCounts misses;
  /// The same misses by what the rules say about the word.
  std::map<MissRule, MissCounts> missesByRule;

  void addRightLayout(const SentenceScore& score);
  void addWrongLayout(const SentenceScore& score);
  /// Adds the sums of another part of the same corpus.
  void add(const CorpusReport& part);

  [[nodiscard]] std::size_t falseFixCount() const;
  [[nodiscard]] double falseFixesPer10000() const;
  /// Shares in per cent.
  [[nodiscard]] double lettersRight() const;
  [[nodiscard]] double oneLetterRightShare() const;
  [[nodiscard]] double firstRightShare() const;
  [[nodiscard]] double secondRightShare() const;
  /// How many words of 10,000 typed a person has to put right, when one sentence in ten begins in
  /// the wrong layout: a false fix counts three times, for the word was right and nobody looks for
  /// it. Words of one letter, which no rule converts, do not count.
  [[nodiscard]] double repairs() const;
};

/// All times together.
[[nodiscard]] std::size_t sumOf(const MissCounts& counts);

/// The figures and every miss, or only the most frequent `misses` of each kind.
[[nodiscard]] nlohmann::ordered_json toJson(const CorpusReport& report, std::size_t misses);
[[nodiscard]] CorpusReport reportFromJson(const nlohmann::ordered_json& json);

}  // namespace tessarok::measure
