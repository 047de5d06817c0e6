#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "words/Language.h"

namespace tessarok::frequencies {

/// How often words were met.
class WordCounts final {
 public:
  /// Counts the words of a sentence of one language: its runs of letters, in lower case. Words with
  /// an apostrophe or a full stop inside, addresses and the like say nothing and are left out.
  void add(std::string_view sentence, Language language);
  /// Counts the runs of Latin letters in a line of a program or of file names.
  void addCode(std::string_view line);
  /// Counts the runs of letters in a dictionary, where words of two languages stand side by side.
  /// They say that a word is known and little about how often people type it.
  void addListed(std::string_view text, Language language);
  /// Gives a word its place in a list by frequency; the first place is 1.
  void rank(const std::string& word, std::size_t place);

  /// Says how often a word was met in what people say: a line "word times" of a list that was
  /// counted elsewhere. Any other line, such as a comment, says nothing.
  void addSpoken(std::string_view line, Language language);

  /// All words counted.
  [[nodiscard]] std::size_t total() const { return total_; }
  /// The table: a head line, then a line for every word that was counted `fewest` times, in
  /// sentences or in dictionaries, has a place or is spoken: the word, its count in sentences, its
  /// place (0 for none), its count in dictionaries and its count in speech, with tabs between them.
  [[nodiscard]] std::string table(std::string_view head, std::size_t fewest) const;

 private:
  struct Entry {
    std::size_t count = 0;
    std::size_t place = 0;
    std::size_t listed = 0;
    std::size_t spoken = 0;
  };

  std::map<std::string, Entry> entries_;
  std::size_t total_ = 0;
};

}  // namespace tessarok::frequencies
