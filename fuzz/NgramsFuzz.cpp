// Files of letter pairs and triples, each of the six kinds in turn.

#include <array>

#include "Check.h"
#include "Input.h"
#include "text/Text.h"
#include "words/Proto.h"
#include "words/WordLines.h"

namespace tessarok::fuzz {
namespace {

/// The symbols of a line; how many Characters it has.
std::size_t symbolsOf(std::string_view line, Language language,
                      std::array<NGramSet::Symbol, 3>& all) {
  std::size_t count = 0;
  for (const auto character : text::Characters(line)) {
    if (count < all.size()) all[count] = NGramSet::symbol(character, language);
    ++count;
  }
  return count;
}

void checkAs(const Proto::Kind& kind, std::string_view text) {
  const auto parsed = Proto::parse(text, kind);
  check(parsed.set.empty() == parsed.fault.has_value(), "a set is empty exactly when at fault");
  std::size_t lineCount = 0;
  WordLines lines(text, WordLines::Split::atLoneLf);
  while (lines.next()) {
    ++lineCount;
    if (parsed.fault) continue;
    std::array<NGramSet::Symbol, 3> symbols{};
    check(symbolsOf(lines.line(), kind.language, symbols) == kind.length,
          "lines are of one length");
    check(parsed.set.contains(std::span(symbols).first(kind.length)), "every line is in the set");
  }
  check(parsed.set.size() <= lineCount, "nothing else is in the set");
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto text = tessarok::fuzz::textOf(data, size);
  // What is no UTF-8 is refused before it is parsed.
  if (!tessarok::text::isValidUtf8(text)) return 0;
  for (const auto& kind : tessarok::Proto::kKinds)
    tessarok::fuzz::checkAs(kind, text);
  return 0;
}
