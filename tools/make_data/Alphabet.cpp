#include "Alphabet.h"

#include <algorithm>

namespace tessarok::makedata {

const Alphabet& Alphabet::english() {
  static const Alphabet alphabet("english", U"abcdefghijklmnopqrstuvwxyz", U"ai");
  return alphabet;
}

const Alphabet& Alphabet::russian() {
  // ё comes last: its code point lies after я, and the data files are in code point order.
  static const Alphabet alphabet("russian", U"абвгдежзийклмнопрстуфхцчшщъыьэюяё", U"абвжикосуя");
  return alphabet;
}

std::optional<std::size_t> Alphabet::indexOf(char32_t letter) const {
  const auto found = std::lower_bound(letters_.begin(), letters_.end(), letter);
  if (found == letters_.end() || *found != letter) return std::nullopt;
  return static_cast<std::size_t>(found - letters_.begin());
}

bool Alphabet::spells(std::u32string_view word) const {
  return !word.empty() && std::all_of(word.begin(), word.end(), [this](char32_t letter) {
    return indexOf(letter).has_value();
  });
}

bool Alphabet::isWord(std::u32string_view word) const {
  if (!spells(word)) return false;
  return word.size() > 1 || oneLetterWords_.find(word.front()) != std::u32string_view::npos;
}

std::optional<std::u32string> withoutYo(std::u32string_view word) {
  if (word.find(U'ё') == std::u32string_view::npos) return std::nullopt;
  std::u32string plain(word);
  std::replace(plain.begin(), plain.end(), U'ё', U'е');
  return plain;
}

}  // namespace tessarok::makedata
