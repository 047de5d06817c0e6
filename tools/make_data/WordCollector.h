#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "Alphabet.h"

namespace tessarok::makedata {

/// Gathers the words of one language's dictionary.
class WordCollector final {
 public:
  explicit WordCollector(const Alphabet& alphabet) : alphabet_(alphabet) {}

  /// Takes a form in any case, and with it its spelling without ё. False when the dictionary does
  /// not take it: a hyphen, an apostrophe, a foreign letter, a lone letter that is no word.
  bool add(std::u32string_view form);

  /// Leaves this lower-case word out, whoever added it, before or after.
  void drop(std::string word) { dropped_.insert(std::move(word)); }

  /// The words in lower case, in byte order, each once. The collector is empty afterwards.
  [[nodiscard]] std::vector<std::string> take();

 private:
  const Alphabet& alphabet_;
  std::vector<std::string> words_;
  std::unordered_set<std::string> dropped_;
};

}  // namespace tessarok::makedata
