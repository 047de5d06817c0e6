#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "words/DataFault.h"
#include "words/Language.h"
#include "words/WordSet.h"

namespace tessarok {

/// The words of two or three letters that are frequent enough to be accepted as conversions.
/// Each set is read on first use and never reloaded. Main thread.
class ShortFreq {
 public:
  /// What a list file holds.
  struct Parsed {
    WordSet words;
    /// The first line that makes the whole file unusable; `words` is empty then.
    std::optional<DataFault> fault;
  };

  ShortFreq() = delete;
  /// Empty when the file is missing or bad.
  [[nodiscard]] static const WordSet& en();
  [[nodiscard]] static const WordSet& ru();
  [[nodiscard]] static const WordSet& of(Language language) {
    return language == Language::russian ? ru() : en();
  }
  [[nodiscard]] static Parsed parse(std::string_view text, Language language);
};

}  // namespace tessarok
