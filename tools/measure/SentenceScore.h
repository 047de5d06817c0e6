#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MissRule.h"

namespace tessarok::measure {

/// A word that is not on the screen as it was meant.
struct Miss {
  std::string meant;
  std::string shown;
  MissRule rule = MissRule::other;
};

/// How the words of one typed sentence came out. Words are what stands between spaces, and count
/// by their letters.
struct SentenceScore {
  std::size_t words = 0;
  /// Words that differ in any character.
  std::vector<Miss> changed;
  /// Words of two letters or more, and how many of them have the right letters.
  std::size_t longWords = 0;
  std::size_t longRight = 0;
  std::size_t oneLetterWords = 0;
  std::size_t oneLetterRight = 0;
  /// The first long word in small letters, with the punctuation behind it.
  std::string firstWord;
  /// The first long word is right.
  bool firstRight = false;
  /// The first or the second long word is right.
  bool secondRight = false;
  /// The long words that are not right.
  std::vector<Miss> misses;
};

[[nodiscard]] SentenceScore scoreSentence(std::string_view meant, std::string_view shown);

}  // namespace tessarok::measure
