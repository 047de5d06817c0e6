#pragma once

#include <string_view>

#include "words/LearnedFiles.h"
#include "words/LearnedLists.h"
#include "words/WordSet.h"

namespace tessarok {

/// What the program learns from the person: a word whose fix was rejected three times is never
/// corrected again, one rejected once or twice is left alone until the program ends. Words are
/// held as typed, normalised. Main thread; what was learned is counted, read and written on a
/// serial queue, so that no key waits for it, however long the lists are.
class IgnoreList {
 public:
  using Counts = LearnedLists::Counts;
  using Company = LearnedFiles::Company;
  using Recovery = LearnedFiles::Recovery;

  IgnoreList() = delete;

  /// Whether a normalised word is never corrected, or not until the program ends. Never waits.
  [[nodiscard]] static bool contains(std::string_view word);
  /// Whether `load` has been called and is not done: not all words are known yet.
  [[nodiscard]] static bool isLoading();

  /// Never corrected; kept in "ignored.txt". This and the next two wait for all that was asked
  /// for; no key may.
  [[nodiscard]] static WordSet words();
  /// Rejected once or twice since the program started; kept nowhere.
  [[nodiscard]] static WordSet sessionWords();
  /// Rejections per word, 1 to 3; kept in "rejects.txt".
  [[nodiscard]] static Counts rejectCounts();

  /// Tells what kind of copy this is, before `load`. Without it the files are this copy's alone.
  static void join(Company company);
  /// Reads both files; only the first call does anything.
  static void load(Recovery recovery);
  /// Counts one rejection of `word` and writes the files that change.
  static void recordRejection(std::string_view word);
  /// Puts a word on the permanent list at once and writes its file.
  static void add(std::string_view word);
  /// Looks after the other copies: to be called every few seconds.
  static void tick();
  /// Waits until everything that was asked for is done. Not from the queue.
  static void flush();
  /// The last call of a run: waits until what was learned is on the disk, and lets another copy
  /// write.
  static void leave();
};

}  // namespace tessarok
