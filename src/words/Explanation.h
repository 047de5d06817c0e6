#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "words/Detector.h"

namespace tessarok {

/// Everything that the program thinks of one word, for a person who asks. Main thread.
struct Explanation {
  std::string word;
  std::optional<Detector::Decision> decision;
  /// The whole new word with the kept tail, by the layouts alone; absent without a decision.
  std::optional<std::string> converted;
  /// Absent when Shift was not held too long.
  std::optional<std::string> shiftLag;
  bool shortRuCandidate = false;
  bool shortEnCandidate = false;
  std::vector<std::string> steps;

  /// The streaks are the lengths of the runs of Russian and English words before it.
  [[nodiscard]] static Explanation of(std::string_view word, std::int64_t ruStreak,
                                      std::int64_t enStreak);
};

}  // namespace tessarok
