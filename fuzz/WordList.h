#pragma once

#include <string>

#include "Check.h"
#include "text/Text.h"
#include "words/WordLines.h"
#include "words/WordList.h"
#include "words/WordSet.h"

namespace tessarok::fuzz {

/// What holds for the words of every list that people write.
inline void checkListedWords(const WordSet& words) {
  // A mark at the start is no part of the first word, which may begin with another.
  std::string lines(WordLines::kByteOrderMark);
  for (const auto& word : words) {
    check(text::normalizedWord(word) == word, "a word is kept in the form that is looked up");
    check(!word.empty() && word.front() != '#', "comments are no words");
    lines += word + "\n";
  }
  check(tessarok::WordList::parse(lines).toSet() == words, "a list read again is the same");
}

}  // namespace tessarok::fuzz
