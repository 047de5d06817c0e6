#include "words/NGramSet.h"

#include <algorithm>

#include "text/Text.h"

namespace tessarok {

namespace {

constexpr NGramSet::Symbol kYo = 33;

}  // namespace

NGramSet::Symbol NGramSet::symbol(std::string_view character, Language language) {
  const auto scalar = text::singleScalar(character);
  if (!scalar) return 0;
  if (*scalar == U'^') return kStart;
  if (*scalar == U'$') return kEnd;
  if (language == Language::russian) {
    if (*scalar == U'ё') return kYo;
    const bool isLetter = *scalar >= U'а' && *scalar <= U'я';
    return isLetter ? static_cast<Symbol>(*scalar - U'а' + 1) : Symbol{0};
  }
  const bool isLetter = *scalar >= U'a' && *scalar <= U'z';
  return isLetter ? static_cast<Symbol>(*scalar - U'a' + 1) : Symbol{0};
}

std::size_t NGramSet::index(std::span<const Symbol> symbols) {
  std::size_t index = 0;
  for (const auto symbol : symbols)
    index = index * kSymbols + symbol;
  return index;
}

bool NGramSet::contains(std::span<const Symbol> symbols) const {
  if (std::find(symbols.begin(), symbols.end(), Symbol{0}) != symbols.end()) return false;
  return bits_.test(index(symbols));
}

void NGramSet::insert(std::span<const Symbol> symbols) {
  auto bit = bits_[index(symbols)];
  if (bit) return;
  bit = true;
  ++size_;
}

}  // namespace tessarok
