#pragma once

// The learned lists, for targets that load them many times. The source is included, because they
// are read once in the life of a process and the fuzzer has to make it forget.

#include <memory>

#include "../src/words/IgnoreList.cpp"
#include "Check.h"
#include "FuzzDesktop.h"
#include "Input.h"
#include "words/UserDict.h"

namespace tessarok::fuzz {

/// What is known after a start with the files that are there.
struct Learned {
  WordSet words;
  IgnoreList::Counts counts;

  bool operator==(const Learned&) const = default;
};

inline Learned loadLearned() {
  // Its parts refer to each other: it cannot be assigned.
  std::destroy_at(&state());
  std::construct_at(&state());
  IgnoreList::load(IgnoreList::Recovery::onDisk);
  IgnoreList::flush();
  for (const auto& word : IgnoreList::words())
    check(!word.empty() && text::normalizedWord(word) == word, "a word is kept as looked up");
  for (const auto& [word, count] : IgnoreList::rejectCounts()) {
    check(!word.empty() && text::normalizedWord(word) == word, "a word is counted as looked up");
    check(count >= 1 && count <= LearnedLists::kPromotionThreshold, "counts are 1 to 3");
    check((count == LearnedLists::kPromotionThreshold) == IgnoreList::words().contains(word),
          "a word is on the list when its count says so");
  }
  return {IgnoreList::words(), IgnoreList::rejectCounts()};
}

/// Learns a word more and starts again: nothing but that word may have changed, as far as the
/// files could be read and the cap allows.
inline void checkLearning(FuzzDesktop& desktop, const std::string& text,
                          const std::filesystem::path& file) {
  const bool isReadable = text::isValidUtf8(text);
  desktop.files().put(file, text);
  const auto before = loadLearned();
  IgnoreList::add("ghbdtn");
  IgnoreList::recordRejection("руддщ");
  IgnoreList::flush();
  const Learned now{IgnoreList::words(), IgnoreList::rejectCounts()};
  if (!isReadable) {
    check(desktop.files().text(file) == text, "a file that cannot be read is left alone");
    return;
  }
  const auto after = loadLearned();
  check(after.words == now.words, "the list read again is the one that was written");
  for (const auto& word : before.words)
    check(after.words.contains(word), "no word is lost");
  // A word that is on the list is not counted any more.
  auto pending = now.counts;
  std::erase_if(pending, [&](const auto& entry) { return now.words.contains(entry.first); });
  check(after.counts == pending, "the counts read again are those that were written");
  // What was read is cut when a rejection is counted, and one of a word on the list is not.
  const bool isCounted = !before.words.contains("руддщ");
  check(!isCounted || pending.size() <= LearnedLists::kPendingCap,
        "the number of counts is bounded");
}

}  // namespace tessarok::fuzz
