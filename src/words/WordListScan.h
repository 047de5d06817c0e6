#pragma once

#include <cstddef>
#include <string_view>

#include "words/Language.h"

namespace tessarok {

/// The fast half of checking a word list (`DictFile::findFault`). A launch checks 34 MB before the
/// first key can be judged, and a plain loop over the bytes takes most of the launch. This one
/// looks at 64 bytes at once and says only how far the list is good; where it stops, the plain
/// loop goes on, which knows what is wrong. Pure functions, any thread.
class WordListScan {
 public:
  WordListScan() = delete;

  /// `data`: a list whose first line is good, that is, it is not empty and has only letters of the
  /// language. The answer is the start of a line such that every line before it is good and sorts
  /// at or after the one above it. That line and what follows it are not judged; they may be
  /// anything from a few lines to the whole list.
  [[nodiscard]] static std::size_t goodPrefix(std::string_view data, Language language);
};

}  // namespace tessarok
