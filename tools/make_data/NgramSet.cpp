#include "NgramSet.h"

#include <stdexcept>

#include "ByteOrder.h"
#include "Text.h"

namespace tessarok::makedata {

namespace {

constexpr char32_t kStart = U'^';
constexpr char32_t kEnd = U'$';

std::size_t power(std::size_t base, std::size_t exponent) {
  std::size_t result = 1;
  for (std::size_t i = 0; i < exponent; ++i)
    result *= base;
  return result;
}

}  // namespace

NgramSet::NgramSet(const Alphabet& alphabet, std::size_t length, Marks marks)
    : alphabet_(alphabet),
      length_(length),
      marks_(marks),
      symbols_(alphabet.size() + 2),
      seen_(power(symbols_, length)) {}

std::size_t NgramSet::indexOf(char32_t symbol) const {
  if (symbol == kStart) return alphabet_.size();
  if (symbol == kEnd) return alphabet_.size() + 1;
  return alphabet_.indexOf(symbol).value();
}

char32_t NgramSet::symbolAt(std::size_t index) const {
  if (index == alphabet_.size()) return kStart;
  if (index == alphabet_.size() + 1) return kEnd;
  return alphabet_.letterAt(index);
}

void NgramSet::add(std::u32string_view word) {
  if (!alphabet_.spells(word)) throw std::invalid_argument("not a word of the alphabet");
  std::u32string text(word);
  if (marks_ == Marks::kBoundary) text = kStart + text + kEnd;
  for (std::size_t start = 0; start + length_ <= text.size(); ++start) {
    std::size_t cell = 0;
    for (std::size_t i = 0; i < length_; ++i)
      cell = cell * symbols_ + indexOf(text[start + i]);
    seen_[cell] = true;
  }
}

std::string NgramSet::groupAt(std::size_t cell) const {
  std::u32string group(length_, U' ');
  for (std::size_t i = length_; i-- > 0; cell /= symbols_)
    group[i] = symbolAt(cell % symbols_);
  return encodeUtf8(group);
}

std::vector<std::string> NgramSet::list() const {
  std::vector<std::string> groups;
  for (std::size_t cell = 0; cell < seen_.size(); ++cell) {
    if (seen_[cell]) groups.push_back(groupAt(cell));
  }
  sortByBytes(groups);  // the cells are in the order of the symbols, where the marks come last
  return groups;
}

}  // namespace tessarok::makedata
