// Lists of short words that are frequent, in each language in turn.

#include <string>

#include "Check.h"
#include "Input.h"
#include "text/Text.h"
#include "words/ShortFreq.h"

namespace tessarok::fuzz {
namespace {

void checkAs(Language language, std::string_view text) {
  const auto parsed = ShortFreq::parse(text, language);
  check(parsed.words.empty() == parsed.fault.has_value(), "a list is empty exactly when at fault");
  std::string lines;
  for (const auto& word : parsed.words) {
    const auto length = text::count(word);
    check(length == 2 || length == 3, "words have two or three letters");
    check(text::lowercased(word) == word, "words are in lower case");
    lines += word + "\n";
  }
  check(ShortFreq::parse(lines, language).words == parsed.words, "a list read again is the same");
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto text = tessarok::fuzz::textOf(data, size);
  if (!tessarok::text::isValidUtf8(text)) return 0;
  tessarok::fuzz::checkAs(tessarok::Language::english, text);
  tessarok::fuzz::checkAs(tessarok::Language::russian, text);
  return 0;
}
