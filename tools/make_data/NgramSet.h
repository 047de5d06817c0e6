#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Alphabet.h"

namespace tessarok::makedata {

/// Collects the letter groups of a given length that occur in words of one alphabet.
class NgramSet final {
 public:
  enum class Marks {
    kNone,      ///< groups inside the word only
    kBoundary,  ///< the word is read with "^" before it and "$" after it
  };

  /// `length` is 2 or 3.
  NgramSet(const Alphabet& alphabet, std::size_t length, Marks marks);

  /// Adds the groups of one word. A word that the alphabet does not spell is a mistake of the
  /// caller: std::invalid_argument.
  void add(std::u32string_view word);

  /// The groups in byte order.
  [[nodiscard]] std::vector<std::string> list() const;

 private:
  [[nodiscard]] std::size_t indexOf(char32_t symbol) const;
  [[nodiscard]] char32_t symbolAt(std::size_t index) const;
  [[nodiscard]] std::string groupAt(std::size_t cell) const;

  const Alphabet& alphabet_;
  std::size_t length_;
  Marks marks_;
  std::size_t symbols_;
  std::vector<bool> seen_;  // one cell for every possible group
};

}  // namespace tessarok::makedata
