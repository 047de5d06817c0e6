#include "CeilingData.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

#include "make_data/ByteSort.h"
#include "make_data/FileSetWriter.h"
#include "make_data/KeyText.h"
#include "text/Text.h"
#include "words/BuiltinPacks.h"
#include "words/Detector.h"
#include "words/Letters.h"

namespace tessarok::measure {

namespace {

using Words = std::set<std::string>;

/// A dictionary must hold something: words of one letter, which are never looked up.
constexpr const char* kEnglishFiller = "q";
constexpr const char* kRussianFiller = "ъ";
constexpr std::size_t kLongestShortWord = 3;

/// The runs of letters.
void addWords(std::string_view sentence, Language language, Words& words) {
  std::string run;
  const auto end = [&] {
    if (!run.empty()) words.insert(text::lowercased(run));
    run.clear();
  };
  for (const auto character : text::Characters(sentence)) {
    if (letters::languageOf(character) == language) {
      run += character;
    } else {
      end();
    }
  }
  end();
}

Words pairsOfWhitelist() {
  Words words;
  for (const auto& keys : Detector::shortWhitelist())
    words.insert(makedata::russianOf(std::string(keys)));
  return words;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  if (!stream) throw std::runtime_error(file.string() + ": cannot be read");
  return std::move(content).str();
}

void stage(const char* dictionary, const char* shortWords, const Words& words,
           makedata::FileSetWriter& writer) {
  std::vector<std::string> all(words.begin(), words.end());
  std::vector<std::string> shorts;
  for (const auto& word : all) {
    if (text::count(word) > 1 && text::count(word) <= kLongestShortWord) shorts.push_back(word);
  }
  makedata::sortByBytes(all);
  makedata::sortByBytes(shorts);
  writer.stage(dictionary, makedata::joinLines(all));
  writer.stage(shortWords, makedata::joinLines(shorts));
}

}  // namespace

void writeCeilingData(const std::vector<Sentence>& sentences, Language language,
                      const std::filesystem::path& packs, const std::filesystem::path& directory) {
  Words own;
  for (const auto& sentence : sentences)
    addWords(sentence.text, language, own);
  Words englishWords = {kEnglishFiller};
  Words russianWords = pairsOfWhitelist();
  russianWords.insert(kRussianFiller);
  (language == Language::russian ? russianWords : englishWords).merge(own);
  makedata::FileSetWriter writer(directory);
  stage("dict_en.txt", "freq_short_en.txt", englishWords, writer);
  stage("dict_ru.txt", "freq_short_ru.txt", russianWords, writer);
  for (const auto& pack : BuiltinPacks::all()) {
    const auto name = pack.resource + ".txt";
    writer.stage(name, contentOf(packs / name));
  }
  writer.commit();
}

}  // namespace tessarok::measure
