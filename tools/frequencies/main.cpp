// Counts the words of the making half of the corpora and writes the tables that the word data are
// made with. Exit status: 0 done, 2 an input or output that cannot be used.

#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "Corpus.h"
#include "Half.h"
#include "WordCounts.h"
#include "make_data/FileSetWriter.h"
#include "text/Text.h"
#include "words/Letters.h"

namespace {

using namespace tessarok;
using frequencies::WordCounts;
namespace fs = std::filesystem;

constexpr int kDone = 0;
constexpr int kUnusable = 2;
/// A word met once may be a slip.
constexpr std::size_t kFewest = 2;

struct Options {
  fs::path corpora = "tools/measure/corpora.json";
  fs::path more = "tools/frequencies/more.json";
  fs::path dictionaries = "tools/frequencies/dictionaries.json";
  fs::path spoken = "tools/frequencies/spoken.json";
  fs::path rankedRussian;
  fs::path rankedEnglish;
  fs::path output = "tools/data";
};

struct Counts {
  WordCounts russian;
  WordCounts english;

  [[nodiscard]] WordCounts& of(Language language) {
    return language == Language::russian ? russian : english;
  }
};

bool isSpelledIn(const std::string& word, Language language) {
  for (const auto character : text::Characters(word)) {
    if (letters::languageOf(character) != language) return false;
  }
  return !word.empty();
}

void addRanks(const fs::path& list, Language language, WordCounts& counts) {
  std::ifstream stream(list);
  if (!stream) throw std::runtime_error(list.string() + ": cannot be read");
  std::size_t place = 0;
  for (std::string line; std::getline(stream, line);) {
    ++place;
    const auto word = text::normalizedWord(line);
    if (isSpelledIn(word, language)) counts.rank(word, place);
  }
}

std::string tableOf(const WordCounts& counts, const char* language) {
  const std::string head =
      std::string("# ") + language +
      " words with the number of times they were counted, their place in a ranked list (0:\n"
      "# none), the number of times they stand in dictionaries and the number of times they were\n"
      "# counted in what people say. Made by `make frequencies`; Resources/NOTICE.md tells the\n"
      "# sources. Counted: " +
      std::to_string(counts.total()) + "\n";
  return counts.table(head, kFewest);
}

void countSentence(const measure::Corpus& corpus, const std::string& sentence, Counts& counts) {
  if (corpus.isCode) {
    counts.english.addCode(sentence);
  } else {
    counts.of(corpus.language).add(sentence, corpus.language);
  }
}

void run(const Options& options) {
  Counts counts;
  for (const auto& corpus : measure::readCorpora(options.corpora)) {
    for (const auto& sentence : measure::sentencesOf(corpus)) {
      if (measure::halfOf(sentence.text) != measure::Half::making) continue;
      if (corpus.hasUnseenThird && measure::isOfUnseenThird(sentence.text)) continue;
      countSentence(corpus, sentence.text, counts);
    }
  }
  // Nothing is judged on these.
  for (const auto& corpus : measure::readCorpora(options.more)) {
    for (const auto& sentence : measure::sentencesOf(corpus))
      countSentence(corpus, sentence.text, counts);
  }
  for (const auto& corpus : measure::readCorpora(options.dictionaries)) {
    for (const auto& paragraph : measure::paragraphsOf(corpus))
      counts.of(corpus.language).addListed(paragraph, corpus.language);
  }
  for (const auto& corpus : measure::readCorpora(options.spoken)) {
    for (const auto& line : measure::paragraphsOf(corpus))
      counts.of(corpus.language).addSpoken(line, corpus.language);
  }
  addRanks(options.rankedRussian, Language::russian, counts.russian);
  addRanks(options.rankedEnglish, Language::english, counts.english);
  makedata::FileSetWriter writer(options.output);
  writer.stage("frequencies_ru.tsv", tableOf(counts.russian, "Russian"));
  writer.stage("frequencies_en.tsv", tableOf(counts.english, "English"));
  writer.commit();
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Makes the frequency tables of Tessarok", "tessarok-count-words");
  app.add_option("output", options.output, "Directory of the tables")->capture_default_str();
  app.add_option("--corpora", options.corpora, "The list of corpora")->capture_default_str();
  app.add_option("--more", options.more, "Texts that are counted whole")->capture_default_str();
  app.add_option("--dictionaries", options.dictionaries, "Dictionaries, for the words they know")
      ->capture_default_str();
  app.add_option("--spoken", options.spoken, "Lists of words counted in what people say")
      ->capture_default_str();
  app.add_option("--ranked-russian", options.rankedRussian, "Russian words by frequency")
      ->required();
  app.add_option("--ranked-english", options.rankedEnglish, "English words by frequency")
      ->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kUnusable;
  }
  try {
    run(options);
    return kDone;
  } catch (const std::exception& error) {
    std::cerr << "tessarok-count-words: " << error.what() << '\n';
    return kUnusable;
  }
}
