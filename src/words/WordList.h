#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "words/WordSet.h"

namespace tessarok {

/// Words in the order of their code points that never change: made on one thread, looked up on
/// another. One text holds them all: ten million words as sets hold them take ten times the memory
/// of their file, and seconds to be given back.
class WordList final {
 public:
  /// An empty list.
  WordList() = default;

  /// The words of a list file: a line each, trimmed and lower-cased, "#" starts a comment line.
  /// `isWanted` is asked now and then, by long work of some seconds too; once it says no, the list
  /// is empty.
  [[nodiscard]] static WordList parse(
      std::string_view text, std::function<bool()> isWanted = [] { return true; });
  /// Of words that are normalised.
  [[nodiscard]] static WordList of(const WordSet& words);

  /// Takes some twenty comparisons for ten million words, and makes no string.
  [[nodiscard]] bool contains(std::string_view word) const;
  [[nodiscard]] bool empty() const { return ends_.empty(); }
  [[nodiscard]] std::size_t size() const { return ends_.size(); }
  /// For printing, and for lists to be joined.
  [[nodiscard]] WordSet toSet() const;

 private:
  friend class WordListMaker;

  [[nodiscard]] std::string_view word(std::size_t index) const;

  /// One word after another, nothing between them.
  std::string text_;
  /// Where each word ends. A list that is read is far from the 4 GiB that this can tell.
  std::vector<std::uint32_t> ends_;
};

}  // namespace tessarok
