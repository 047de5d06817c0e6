#pragma once

#include <cstdint>
#include <string_view>

#include "words/Detector.h"

/// What is different about words of a command line. Nothing is on a desktop that knows of none.
/// Main thread.
namespace tessarok::commandWords {

/// Whether a word stays as typed, though it would be converted in a text: names of programs and
/// their abbreviations are short and look like anything.
[[nodiscard]] bool mustStay(std::string_view word, const Detector::Decision& decision,
                            std::int64_t ruStreak);
/// Whether the word is the name of a program where one is asked for.
[[nodiscard]] bool isCommand(std::string_view word);

}  // namespace tessarok::commandWords
