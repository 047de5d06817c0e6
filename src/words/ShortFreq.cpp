#include "words/ShortFreq.h"

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/NGramSet.h"
#include "words/ResourceLocator.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

bool isLetterOf(std::string_view character, Language language) {
  const auto symbol = NGramSet::symbol(character, language);
  return symbol != 0 && symbol < NGramSet::kStart;
}

std::string_view problemOf(std::string_view word, Language language) {
  std::size_t letters = 0;
  for (const auto character : text::Characters(word)) {
    if (character == "\r\n") return kCrLfReason;
    if (!isLetterOf(character, language)) return "only letters of the language are allowed";
    ++letters;
  }
  if (letters < 2 || letters > 3) return "the word does not have two or three letters";
  return {};
}

WordSet load(std::string_view resource, Language language) {
  const auto location = ResourceLocator::find(resource);
  if (!location) return {};
  const auto text = platform::desktop().files().read(*location);
  if (!text || !text::isValidUtf8(*text)) return {};
  return ShortFreq::parse(*text, language).words;
}

}  // namespace

const WordSet& ShortFreq::en() {
  static const WordSet words = load("freq_short_en", Language::english);
  return words;
}

const WordSet& ShortFreq::ru() {
  static const WordSet words = load("freq_short_ru", Language::russian);
  return words;
}

ShortFreq::Parsed ShortFreq::parse(std::string_view text, Language language) {
  Parsed parsed;
  // A CR LF pair is one Character and breaks no line, so such a file is one overlong line.
  WordLines lines(text, WordLines::Split::atLoneLf);
  while (lines.next()) {
    auto word = text::lowercased(lines.line());
    const auto problem = problemOf(word, language);
    if (!problem.empty()) return {WordSet(), DataFault{lines.number(), std::string(problem)}};
    parsed.words.insert(std::move(word));
  }
  if (parsed.words.empty()) parsed.fault = DataFault{0, "the file holds no word"};
  return parsed;
}

}  // namespace tessarok
