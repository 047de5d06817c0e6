#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "typing/ReusableOptional.h"

namespace tessarok {

/// What `KeyTap` knows of the word being typed and of those before it. Main thread.
struct WordState {
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

  static constexpr std::size_t kMaxBuffer = 64;
  static constexpr std::size_t kMaxPendingShorts = 8;
  /// A tail that holds this many Characters takes no more.
  static constexpr std::size_t kMaxTail = 64;

  WordState();

  /// The word under the caret is not known; nothing is tracked until the next reset.
  bool untrackableWord = false;
  /// The word so far, as typed.
  std::string buffer;
  /// Consecutive words that went to Russian or to English. Never both positive.
  std::int64_t ruStreak = 0;
  std::int64_t enStreak = 0;
  /// Short words that wait for the next word to tell their language, oldest first.
  std::vector<std::string> pendingShorts;
  /// The last word committed, as it stands on the screen; what ⌥Space converts.
  ReusableOptional<Fix> lastFix;
  ReusableOptional<AutoFix> lastAutoFix;
  ReusableOptional<Rejection> pendingRejection;

  void reset();
  void resetStreaks();
};

}  // namespace tessarok
