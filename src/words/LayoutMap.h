#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "text/ScratchText.h"
#include "words/Language.h"

namespace tessarok {

/// The one place that knows which character a physical key gives in the English (QWERTY) layout
/// and in the Russian (ЙЦУКЕН) layout. Process-wide tables; they start with the standard layouts
/// and are replaced by what the person's own layouts give. Main thread only.
class LayoutMap {
 public:
  /// Character to Character. Every key of a layout gives a single scalar, so that is what the
  /// tables hold; Characters of several scalars are in no table.
  using Map = std::unordered_map<char32_t, char32_t>;
  using Set = std::unordered_set<char32_t>;

  LayoutMap() = delete;

  [[nodiscard]] static const Map& enToRu();
  [[nodiscard]] static const Map& ruToEn();
  /// The 52 letters a–z and A–Z.
  [[nodiscard]] static const Set& englishLetters();
  /// The 66 letters а–я and А–Я with ё and Ё.
  [[nodiscard]] static const Set& russianLetters();
  /// Characters of the English layout that are no letters but whose key types a Russian letter,
  /// such as the comma (б).
  [[nodiscard]] static const Set& russianLetterKeys();
  /// Whether a key of the layout types `character`.
  [[nodiscard]] static bool isKeyOf(Language layout, std::string_view character);
  /// Whether `character` is one of `russianLetterKeys`.
  [[nodiscard]] static bool isRussianLetterKey(std::string_view character);
  /// Whether the maps in force are complete.
  [[nodiscard]] static bool isAvailable();

  /// The text, typed in the layout `from`, with every Character replaced by what its key gives in
  /// the other one; what no table holds stays. As many Characters come out as go in.
  [[nodiscard]] static std::string convert(std::string_view text, Language from);
  /// The same, behind what `out` holds.
  static void appendConverted(std::string_view text, Language from, ScratchText::String& out);

  /// The keys of `map` that are no letters and give a Russian letter.
  [[nodiscard]] static Set letterKeys(const Map& map);

  /// Replaces the maps in force; whether the new ones cover both alphabets. Incomplete maps leave
  /// none in force: no conversion is better than a wrong one.
  static bool install(Map enToRu, Map ruToEn);
};

}  // namespace tessarok
