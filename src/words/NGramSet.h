#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "words/Language.h"

namespace tessarok {

/// A set of letter pairs or triples of one language, such as those that occur in its words. The
/// alphabet has a few dozen symbols, so every possible triple has a bit of its own.
class NGramSet {
 public:
  /// A letter of the language or a mark, as a small number; 0 for everything else.
  using Symbol = unsigned char;
  static constexpr std::size_t kSymbols = 36;
  static constexpr Symbol kStart = 34;
  static constexpr Symbol kEnd = 35;

  /// a–z, or а–я and ё, as 1 and up; "^" and "$" are `kStart` and `kEnd` in both languages.
  [[nodiscard]] static Symbol symbol(std::string_view character, Language language);

  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] std::size_t size() const { return size_; }
  /// Whether these two or three symbols are in the set; never when one of them is 0.
  [[nodiscard]] bool contains(std::span<const Symbol> symbols) const;
  /// Takes two or three symbols; 0 is none.
  void insert(std::span<const Symbol> symbols);

 private:
  [[nodiscard]] static std::size_t index(std::span<const Symbol> symbols);

  std::bitset<kSymbols * kSymbols * kSymbols> bits_;
  std::size_t size_ = 0;
};

}  // namespace tessarok
