#include "words/Proto.h"

#include <algorithm>
#include <array>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/ResourceLocator.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

using Symbol = NGramSet::Symbol;

struct Sets {
  std::array<NGramSet, std::size(Proto::kKinds)> byKind;
  bool loaded = false;
};

Sets& sets() {
  static Sets instance;
  return instance;
}

const NGramSet& setOf(Language language, std::size_t length, bool boundary) {
  const auto* const kind = std::find_if(
      std::begin(Proto::kKinds), std::end(Proto::kKinds), [&](const Proto::Kind& each) {
        return each.language == language && each.length == length && each.boundary == boundary;
      });
  return sets().byKind[static_cast<std::size_t>(kind - std::begin(Proto::kKinds))];
}

/// Reads the symbols of a line; what is wrong with it, or empty when nothing is.
std::string_view readSymbols(std::string_view line, const Proto::Kind& kind,
                             std::array<Symbol, 3>& symbols) {
  std::size_t count = 0;
  for (const auto character : text::Characters(line)) {
    if (character == "\r\n") return kCrLfReason;
    if (count == kind.length) return "the line is longer than the n-grams of this file";
    const auto symbol = NGramSet::symbol(character, kind.language);
    const bool startsHere = kind.boundary && count == 0;
    const bool endsHere = kind.boundary && count + 1 == kind.length;
    if (symbol == 0) return "only lower-case letters of the language are allowed";
    if (symbol == NGramSet::kStart && !startsHere) return "a \"^\" that is not allowed here";
    if (symbol == NGramSet::kEnd && !endsHere) return "a \"$\" that is not allowed here";
    symbols[count] = symbol;
    ++count;
  }
  if (count < kind.length) return "the line is shorter than the n-grams of this file";
  return {};
}

NGramSet loadSet(const Proto::Kind& kind) {
  const auto location = ResourceLocator::find(kind.resource);
  if (!location) return {};
  const auto text = platform::desktop().files().read(*location);
  if (!text || !text::isValidUtf8(*text)) return {};
  return Proto::parse(*text, kind).set;
}

/// The share of a word's n-grams that are in `set`; 1 for a word too short to have any.
double score(std::string_view word, std::size_t n, Language language, const NGramSet& set) {
  std::array<Symbol, 3> window{};
  std::size_t characters = 0;
  std::size_t known = 0;
  for (const auto character : text::Characters(word)) {
    std::shift_left(window.begin(), window.end(), 1);
    window.back() = NGramSet::symbol(character, language);
    ++characters;
    if (characters >= n && set.contains(std::span(window).last(n))) ++known;
  }
  if (characters < n) return 1.0;
  return static_cast<double>(known) / static_cast<double>(characters - n + 1);
}

}  // namespace

void Proto::load() {
  auto& all = sets();
  if (all.loaded) return;
  all.loaded = true;
  for (std::size_t i = 0; i < std::size(kKinds); ++i)
    all.byKind[i] = loadSet(kKinds[i]);
}

Proto::Parsed Proto::parse(std::string_view text, const Kind& kind) {
  Parsed parsed;
  // A CR LF pair is one Character and breaks no line, so such a file is one overlong line.
  WordLines lines(text, WordLines::Split::atLoneLf);
  std::array<Symbol, 3> symbols{};
  while (lines.next()) {
    const auto problem = readSymbols(lines.line(), kind, symbols);
    if (!problem.empty()) return {NGramSet(), DataFault{lines.number(), std::string(problem)}};
    parsed.set.insert(std::span(symbols).first(kind.length));
  }
  if (parsed.set.empty()) parsed.fault = DataFault{0, "the file holds no n-gram"};
  return parsed;
}

const NGramSet& Proto::pairs(Language language) {
  return setOf(language, 2, false);
}

const NGramSet& Proto::triples(Language language) {
  return setOf(language, 3, false);
}

const NGramSet& Proto::marked(Language language) {
  return setOf(language, 3, true);
}

bool Proto::isAvailable(Language language) {
  return !pairs(language).empty() && !triples(language).empty() && !marked(language).empty();
}

bool Proto::hasImpossible(std::string_view word, Language language) {
  const auto& possible = marked(language);
  if (possible.empty() || word.empty()) return false;
  std::array<Symbol, 3> window{0, 0, NGramSet::kStart};
  std::size_t symbols = 1;
  const auto isImpossible = [&](Symbol symbol) {
    std::shift_left(window.begin(), window.end(), 1);
    window.back() = symbol;
    ++symbols;
    return symbols >= 3 && !possible.contains(window);
  };
  for (const auto character : text::Characters(word)) {
    if (isImpossible(NGramSet::symbol(character, language))) return true;
  }
  return isImpossible(NGramSet::kEnd);
}

double Proto::plausibility(std::string_view word, Language language) {
  const double p2 = score(word, 2, language, pairs(language));
  const double p3 = score(word, 3, language, triples(language));
  return p2 * 0.7 + p3 * 0.3;
}

}  // namespace tessarok
