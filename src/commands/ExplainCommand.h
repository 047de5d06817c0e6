#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "commands/Options.h"
#include "commands/PersonsLists.h"

namespace tessarok::commands {

/// What `tessarok explain` understands.
struct ExplainOptions {
  /// One JSON object a word instead of text.
  bool json = false;
  Lists lists = Lists::persons;
  /// Lengths of the runs of Russian and of English words before the word.
  std::int64_t ruStreak = 0;
  std::int64_t enStreak = 0;
  /// A single "-" stands for standard input, a word a line.
  std::vector<std::string> words;
};

/// `tessarok explain`: prints the decision for each word and why. Returns the exit status.
int runExplain(const Options& options, const ExplainOptions& explain);

}  // namespace tessarok::commands
