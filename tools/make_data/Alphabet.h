#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::makedata {

/// The letters of one of the two languages: which words its data files may hold.
class Alphabet final {
 public:
  [[nodiscard]] static const Alphabet& english();
  [[nodiscard]] static const Alphabet& russian();

  /// Number of letters.
  [[nodiscard]] std::size_t size() const { return letters_.size(); }

  /// Position of a lower-case letter, in the order of the code points; absent for anything else.
  [[nodiscard]] std::optional<std::size_t> indexOf(char32_t letter) const;

  [[nodiscard]] char32_t letterAt(std::size_t index) const { return letters_[index]; }

  /// True for a non-empty word of lower-case letters of this alphabet and nothing else.
  [[nodiscard]] bool spells(std::u32string_view word) const;

  /// Whether a dictionary takes this word: spelled in the alphabet and, if it is one letter long,
  /// a word that people write and not just the name of a letter.
  [[nodiscard]] bool isWord(std::u32string_view word) const;

  /// "english" or "russian", for messages.
  [[nodiscard]] const char* name() const { return name_; }

 private:
  Alphabet(const char* name, std::u32string_view letters, std::u32string_view oneLetterWords)
      : name_(name), letters_(letters), oneLetterWords_(oneLetterWords) {}

  const char* name_;
  std::u32string_view letters_;
  std::u32string_view oneLetterWords_;
};

/// The spelling of a Russian word with every ё written as е, as most people type it; absent when
/// the word has no ё.
[[nodiscard]] std::optional<std::u32string> withoutYo(std::u32string_view word);

}  // namespace tessarok::makedata
