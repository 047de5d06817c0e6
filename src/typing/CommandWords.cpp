#include "typing/CommandWords.h"

#include "platform/Desktop.h"
#include "text/Text.h"

namespace tessarok::commandWords {

namespace {

using Part = platform::TextContext::Part;

/// No command is Russian, so only a word that is hardly anything else is one. Of 60,000 names of
/// packages two parts are such words.
constexpr std::size_t kShortestInPlaceOfCommand = 5;
/// Kinds of things are named with two letters ("ns").
constexpr std::size_t kShortestArgument = 3;

}  // namespace

bool mustStay(std::string_view word, const Detector::Decision& decision, std::int64_t ruStreak) {
  if (decision.to != Language::russian) return false;
  auto& context = platform::desktop().textContext();
  const auto part = context.part();
  if (part == Part::text) return false;
  if (part == Part::commandOption) return true;
  const auto core = text::withoutLast(word, decision.trim);
  const auto length = text::count(core);
  if (part == Part::commandName) {
    const bool isSure = decision.confidence == Detector::Confidence::high;
    return !isSure || length < kShortestInPlaceOfCommand || context.isProgram(core);
  }
  if (ruStreak > 0) return false;
  return length < kShortestArgument || context.isProgram(core);
}

bool isCommand(std::string_view word) {
  auto& context = platform::desktop().textContext();
  return context.part() == Part::commandName && context.isProgram(word);
}

}  // namespace tessarok::commandWords
