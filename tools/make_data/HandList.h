#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Alphabet.h"
#include "InputText.h"

namespace tessarok::makedata {

/// The entries of a list written by hand: one a line, trimmed; empty lines are none, and lines that
/// start with "#" are comments. Throws InputError for an entry that holds white space or stands
/// there twice (in any case): such a line is a slip of the editor's hand.
[[nodiscard]] std::vector<Line> readHandList(std::string_view utf8,
                                             const std::filesystem::path& file);

/// Bounds of the length of a word, in letters.
struct LengthRange {
  std::size_t shortest = 1;
  std::size_t longest = 64;
};

/// The lower-case words of a hand-written list whose entries must all be words of `alphabet` and of
/// a length within `lengths`. Throws InputError for the first that is not.
[[nodiscard]] std::vector<std::string> readHandWords(std::string_view utf8,
                                                     const std::filesystem::path& file,
                                                     const Alphabet& alphabet,
                                                     LengthRange lengths = {});

}  // namespace tessarok::makedata
