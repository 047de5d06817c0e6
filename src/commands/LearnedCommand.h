#pragma once

#include <string>
#include <vector>

#include "commands/Options.h"

namespace tessarok::commands {

/// What `tessarok learned` understands.
struct LearnedOptions {
  bool json = false;
};

/// `tessarok learned`: prints the words that are left alone because the person rejected their
/// corrections, and why. Returns the exit status.
int runLearned(const Options& options, const LearnedOptions& learned);

/// `tessarok learned forget`: takes words back, in the files and in every running copy. Returns the
/// exit status: 1 when one of them was not learned.
int runForget(const Options& options, const std::vector<std::string>& words);

}  // namespace tessarok::commands
