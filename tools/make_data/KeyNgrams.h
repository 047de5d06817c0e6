#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessarok::makedata {

/// The pairs and triples of one language in key spelling (see KeyText.h), weighed by how often they
/// are typed, and the three measures that the word decision takes of a word.
class KeyNgrams final {
 public:
  /// A group is part of the language from these weights on, in times per million words.
  struct Floors {
    double plain = 0;
    double marked = 0;
  };

  KeyNgrams();

  /// Counts the groups of a word that is typed so often.
  void add(std::string_view keys, double perMillion);
  void setFloors(const Floors& floors) { floors_ = floors; }

  /// Whether the word has a triple, its ends included, that is no part of the language.
  [[nodiscard]] bool hasImpossible(std::string_view keys) const;
  /// 0.7 of the share of known pairs and 0.3 of that of known triples.
  [[nodiscard]] double plausibility(std::string_view keys) const;

  /// Groups that are part of the language, in key spelling with "^" and "$" for the ends, unsorted.
  [[nodiscard]] std::vector<std::string> pairs() const;
  [[nodiscard]] std::vector<std::string> triples() const;
  [[nodiscard]] std::vector<std::string> markedTriples() const;

 private:
  Floors floors_;
  std::vector<double> pairs_;
  std::vector<double> triples_;
  std::vector<double> marked_;
};

}  // namespace tessarok::makedata
