#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "words/DataFault.h"
#include "words/Language.h"
#include "words/NGramSet.h"

namespace tessarok {

/// The letter pairs and triples of both languages, and how much a word looks like one of them.
/// All sets are empty until `load`. Filled on the main thread at start-up, read afterwards.
class Proto {
 public:
  /// What one of the six files holds.
  struct Kind {
    const char* resource;
    Language language;
    /// Symbols of one n-gram.
    std::size_t length;
    /// Triples of words written between "^" and "$": the complete list of possible ones.
    bool boundary;
  };
  /// What such a file was read as.
  struct Parsed {
    NGramSet set;
    /// The first line that makes the whole file unusable; `set` is empty then.
    std::optional<DataFault> fault;
  };

  Proto() = delete;

  static constexpr Kind kKinds[] = {
      {"proto_ru2", Language::russian, 2, false}, {"proto_ru3", Language::russian, 3, false},
      {"proto_en2", Language::english, 2, false}, {"proto_en3", Language::english, 3, false},
      {"proto_ru3b", Language::russian, 3, true}, {"proto_en3b", Language::english, 3, true},
  };

  /// Reads the six files; only the first call does anything. A missing or bad file leaves its set
  /// empty.
  static void load();
  [[nodiscard]] static Parsed parse(std::string_view text, const Kind& kind);

  /// Letter pairs (`pairs`), triples (`triples`) and marked triples (`marked`) of a language.
  [[nodiscard]] static const NGramSet& pairs(Language language);
  [[nodiscard]] static const NGramSet& triples(Language language);
  [[nodiscard]] static const NGramSet& marked(Language language);

  /// Whether all three sets of the language are there.
  [[nodiscard]] static bool isAvailable(Language language);
  /// Whether the lower-case word holds a triple that no word of the language has at that place.
  /// False without data.
  [[nodiscard]] static bool hasImpossible(std::string_view word, Language language);
  /// The share of the word's known pairs and triples, 0.7 to 0.3.
  [[nodiscard]] static double plausibility(std::string_view word, Language language);
};

}  // namespace tessarok
