#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "words/WordSet.h"

namespace tessarok {

/// What was learned from the person, as its two files hold it: the words that are never corrected,
/// and how often each word was rejected. A value without files; any one thread.
class LearnedLists final {
 public:
  using Counts = std::map<std::string, std::int64_t, std::less<>>;

  /// The rejection that makes a word permanent; stored counts never exceed it.
  static constexpr std::int64_t kPromotionThreshold = 3;
  /// So many words with fewer rejections are kept, so that the file stays small for ever.
  static constexpr std::size_t kPendingCap = 500;

  /// What a rejection has done.
  enum class Effect { none, counted, promoted };

  [[nodiscard]] const WordSet& words() const { return words_; }
  /// 1 to 3 a word.
  [[nodiscard]] const Counts& counts() const { return counts_; }

  /// Takes in the text of "ignored.txt".
  void readIgnored(std::string_view text);
  /// Takes in the text of "rejects.txt", after the other; whether that brought back a promoted
  /// word.
  bool readRejects(std::string_view text);

  /// Counts rejections of a normalised word, at least one.
  Effect reject(const std::string& word, std::int64_t times);
  /// Puts a normalised word on the list; false when it is there already.
  bool add(std::string word);
  /// Takes a word back, and how often it was rejected; false when there was nothing of it.
  bool forget(const std::string& word);
  /// Forgets the words with the fewest rejections beyond the cap.
  void prune();

  /// The text of each file.
  [[nodiscard]] std::string ignoredText() const;
  [[nodiscard]] std::string rejectsText() const;
  /// A line a word with its number, as in "rejects.txt"; nothing for none.
  [[nodiscard]] static std::string linesOf(const Counts& counts);
  /// The word and number of one such line; absent when it is none.
  [[nodiscard]] static std::optional<Counts::value_type> parseLine(std::string_view line);

 private:
  WordSet words_;
  Counts counts_;
  /// The words of `counts_` that are not promoted, those to be forgotten first at the front.
  std::set<std::pair<std::int64_t, std::string>> pending_;
};

}  // namespace tessarok
