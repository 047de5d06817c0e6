#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "typing/Boundary.h"
#include "words/Language.h"

namespace tessarok {

/// What is known of the word being typed and of those before it. It knows no keys and decides
/// nothing; `KeyTap` tells it what happened. Main thread.
///
/// Records are cleared and filled with every word; they keep the storage of their strings, so that
/// typing allocates nothing once those have grown.
class WordState {
 public:
  /// A word that is on the screen, and what was typed after it.
  struct Fix {
    std::string text;
    std::string tail;
  };
  /// An automatic conversion.
  struct AutoFix {
    std::string typed;
    std::string converted;
    /// The part of `typed` that was converted: what is learned when the fix is rejected.
    std::string rejectionWord;
  };
  /// An automatic fix that was erased; typing the same word again rejects it.
  struct Rejection {
    std::string typed;
    std::string rejectionWord;
    /// Seconds of uptime.
    double at = 0;
  };
  /// What becomes of an armed rejection when the caret may have moved.
  enum class ArmedRejection { drop, keepBetweenWords };

  static constexpr std::size_t kMaxBuffer = 64;
  static constexpr std::size_t kMaxPendingShorts = 8;
  /// A tail that holds this many Characters takes no more.
  static constexpr std::size_t kMaxTail = 64;
  /// A rejection may be confirmed for so long, seconds.
  static constexpr double kRejectionWindow = 30.0;

  WordState();

  /// The word under the caret is not known; nothing is tracked until the next reset.
  [[nodiscard]] bool untrackableWord() const { return untrackableWord_; }
  /// The word so far, as typed.
  [[nodiscard]] const std::string& buffer() const { return buffer_; }
  /// Consecutive words that went to Russian or to English. Never both positive.
  [[nodiscard]] std::int64_t ruStreak() const { return ruStreak_; }
  [[nodiscard]] std::int64_t enStreak() const { return enStreak_; }
  /// Short words that wait for the next word to tell their language, oldest first.
  [[nodiscard]] const std::vector<std::string>& pendingShorts() const { return pendingShorts_; }
  /// The last word committed, as it stands on the screen, which ⌥Space converts; null when none is.
  [[nodiscard]] const Fix* lastFix() const { return lastFix_.text.empty() ? nullptr : &lastFix_; }
  /// The automatic fix that can be taken back; null when there is none.
  [[nodiscard]] const AutoFix* lastAutoFix() const {
    return lastAutoFix_.typed.empty() ? nullptr : &lastAutoFix_;
  }
  /// Null when none is armed.
  [[nodiscard]] const Rejection* pendingRejection() const {
    return pendingRejection_.typed.empty() ? nullptr : &pendingRejection_;
  }

  // Where the caret is.

  /// Forgets everything: whatever is typed next begins a word.
  void reset();
  /// Forgets everything, and what is under the caret is not known.
  void forget();
  /// What is under the caret is not known any more; what came before stays.
  void markUntrackable() { untrackableWord_ = true; }
  /// Something may have moved the caret or changed the layout. Behind a finished word that is of
  /// no matter; a word that it happened in or right behind is not known any more.
  void invalidate(ArmedRejection rejection);

  // Typing.

  /// A letter or the like. Right behind a fixed word it goes on with that.
  void append(std::string_view character);
  /// Backspace, at `now` seconds of uptime: shortens the word, or the last one. Whether this erased
  /// all of an automatic fix, which arms its rejection.
  [[nodiscard]] bool erase(double now);
  /// The word has ended; the next character begins another.
  void clearBuffer() { buffer_.clear(); }
  /// The word is finished. If it is one whose fix was erased shortly before, what is to be learned
  /// from that; absent otherwise. Only the first word after the erasing counts.
  [[nodiscard]] std::optional<std::string> takeConfirmedRejection(double now);

  // What became of the finished word.

  /// It was too short to be looked at.
  void leaveTooShort(const Boundary& boundary);
  /// Its conversion is what was typed.
  void leaveUnchanged(const Boundary& boundary);
  void leaveAsTyped(const Boundary& boundary);
  /// It stays for now, and waits for the word after it.
  void holdBack(const Boundary& boundary);
  /// It is being converted, and the short words before it have had their turn.
  void countConverted(Language to, const Boundary& boundary);
  /// It was converted to `fixed`; `core` is the part that was not kept as typed.
  void rememberConverted(std::string_view fixed, std::string_view core, const Boundary& boundary);
  /// Only its capitals were put right.
  void rememberUnshifted(std::string_view fixed, const Boundary& boundary);

  // Conversion by hand. `language` is whose layout the new word belongs to; absent without letters.

  void convertBuffer(std::string_view converted, std::optional<Language> language);
  void convertLastFix(std::string_view converted, std::optional<Language> language);

 private:
  void resetStreaks();
  void keepStreaks();
  void count(Language language);
  void rememberCommitted(const Boundary& boundary);
  void setLastFix(std::string_view text, std::string_view tail);
  void forgetLastFix();
  void forgetLastAutoFix() { lastAutoFix_.typed.clear(); }
  void forgetRejection() { pendingRejection_.typed.clear(); }

  bool untrackableWord_ = false;
  std::string buffer_;
  std::int64_t ruStreak_ = 0;
  std::int64_t enStreak_ = 0;
  std::vector<std::string> pendingShorts_;
  // Each is there when its first text is not empty.
  Fix lastFix_;
  AutoFix lastAutoFix_;
  Rejection pendingRejection_;
};

}  // namespace tessarok
