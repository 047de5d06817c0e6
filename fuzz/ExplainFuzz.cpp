// Words, a line each, as `tessarok explain -` takes them: what is decided for any text at all.

#include <string>

#include "Check.h"
#include "Input.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "text/Text.h"
#include "words/Detector.h"
#include "words/LayoutMap.h"
#include "words/Proto.h"

namespace tessarok::fuzz {
namespace {

void checkText(std::string_view word) {
  std::size_t characters = 0;
  std::string joined;
  for (const auto character : text::Characters(word)) {
    ++characters;
    joined += character;
  }
  check(joined == word, "the Characters of a text are the text");
  check(text::count(word) == characters, "counting is going through");
  for (std::size_t n = 0; n < 4; ++n) {
    check(std::string(text::withoutLast(word, n)) + std::string(text::last(word, n)) == word,
          "what is cut off is not lost");
  }
  check(text::isValidUtf8(text::lowercased(word)), "lower case is text too");
  check(text::normalizedWord(text::normalizedWord(word)) == text::normalizedWord(word),
        "a word in the form that is looked up stays as it is");
}

void checkConversion(std::string_view word) {
  for (const auto from : {Language::english, Language::russian}) {
    const auto converted = LayoutMap::convert(word, from);
    check(text::isValidUtf8(converted), "what a layout gives is text");
    check(text::count(converted) == text::count(word), "a key gives one Character");
  }
}

void checkDecision(std::string_view word) {
  for (const std::int64_t ruStreak : {0, 2}) {
    for (const std::int64_t enStreak : {0, 2}) {
      DecisionTrace trace;
      const auto decision = Detector::decide(word, ruStreak, enStreak, &trace);
      check(decision == Detector::decide(word, ruStreak, enStreak), "looking on changes nothing");
      check(!trace.steps().empty(), "there is a reason for everything");
      if (!decision) continue;
      check(decision->trim < text::count(word), "something is converted");
      check(!Detector::isExcluded(text::normalizedWord(word)), "listed words are left alone");
    }
  }
  if (const auto fixed = Detector::fixShiftLag(word)) {
    check(*fixed != word, "a fix changes something");
    check(text::lowercased(*fixed) == text::lowercased(word), "and nothing but the case");
  }
  static_cast<void>(Detector::isShortRuCandidate(word));
  static_cast<void>(Detector::isShortEnCandidate(word));
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  static virtualdesktop::VirtualDesktop desktop("/nonexistent", TESSAROK_TEST_DATA);
  static const bool isReady = [] {
    platform::setDesktop(desktop);
    Proto::load();
    return Proto::isAvailable(Language::english) && Proto::isAvailable(Language::russian);
  }();
  fuzz::check(isReady, "the word data of the tests is there");
  const auto text = fuzz::textOf(data, size);
  if (!text::isValidUtf8(text)) return 0;
  for (const auto word : fuzz::linesOf(text)) {
    fuzz::checkText(word);
    fuzz::checkConversion(word);
    fuzz::checkDecision(word);
  }
  return 0;
}
