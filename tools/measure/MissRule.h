#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tessarok::measure {

/// What about a word makes the decision leave it, whatever the data hold.
enum class MissRule {
  /// ё is on the key that pauses the program (` in English): the word has it or is typed within
  /// the pause.
  pause,
  /// A key of the word is punctuation in the one layout and a letter in the other.
  punctuation,
  /// Two letters are held back for a longer word right behind them.
  twoLetters,
  /// Nothing about it: the data lack the word, or another word stands in its way.
  other,
};

inline constexpr std::array kMissRules = {MissRule::pause, MissRule::punctuation,
                                          MissRule::twoLetters, MissRule::other};

/// A short name, for JSON.
[[nodiscard]] const char* nameOf(MissRule rule);
/// A line for people.
[[nodiscard]] const char* describe(MissRule rule);

/// The rule for the word that starts at this Character of the sentence and has so many.
[[nodiscard]] MissRule missRuleOf(std::string_view sentence, std::size_t start, std::size_t length);

}  // namespace tessarok::measure
