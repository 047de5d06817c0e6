#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Alphabet.h"

namespace tessarok::makedata {

/// How often people type a word, from a table of counts and of places in a ranked list.
class FrequencyTable final {
 public:
  /// What the table says about one word.
  struct Entry {
    std::size_t count = 0;
    /// 1 for the most frequent word; 0 for a word that is not ranked.
    std::size_t place = 0;
    /// Times in dictionaries and thesauri, whose words are known but not all typed.
    std::size_t listed = 0;
    /// Times in subtitles, of everything that is said there.
    std::size_t spoken = 0;
    /// Times in a million words of text: the largest of what the counts and the place make likely.
    double typedPerMillion = 0;
    /// The same, or what the dictionaries make likely when that is more.
    double perMillion = 0;
  };

  /// Reads the lines "word TAB count TAB place TAB listed TAB spoken". Throws InputError for any
  /// other line, and for a word that the alphabet does not spell.
  [[nodiscard]] static FrequencyTable parse(std::string_view utf8,
                                            const std::filesystem::path& file,
                                            const Alphabet& alphabet);

  /// 0 for a word that the table does not hold.
  [[nodiscard]] double perMillion(const std::string& word) const;

  [[nodiscard]] const std::unordered_map<std::string, Entry>& entries() const { return entries_; }

 private:
  std::unordered_map<std::string, Entry> entries_;
};

}  // namespace tessarok::makedata
