#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "words/WordSet.h"

namespace tessarok {

/// What the program learns from the person: a word whose fix was rejected three times is never
/// corrected again, one rejected once or twice is left alone until the program ends. Words are
/// held as typed, normalised. Main thread; files are written on a serial queue.
class IgnoreList {
 public:
  using Counts = std::map<std::string, std::int64_t, std::less<>>;

  IgnoreList() = delete;

  /// Never corrected; kept in "ignored.txt".
  [[nodiscard]] static const WordSet& words();
  /// Rejected once or twice since the program started; kept nowhere.
  [[nodiscard]] static const WordSet& sessionWords();
  /// Rejections per word, 1 to 3; kept in "rejects.txt".
  [[nodiscard]] static const Counts& rejectCounts();

  /// Reads both files; only the first call does anything. With `persistRecovered`, words that
  /// were promoted but are missing from "ignored.txt" are written back to it.
  static void load(bool persistRecovered);
  /// Counts one rejection of `word` and queues the files that change.
  static void recordRejection(std::string_view word);
  /// Puts a word on the permanent list at once and queues its file.
  static void add(std::string_view word);
  /// Waits until every queued write has finished. Not from the queue.
  static void flush();
  /// From now on everything learned stays in memory: another running copy owns the files.
  static void keepInMemory();
};

}  // namespace tessarok
