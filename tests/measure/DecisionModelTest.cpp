// The generator's model of the word decision against the corrector's own, on the same data.

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>

#include "desktops/virtual/Session.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "make_data/DecisionModel.h"
#include "make_data/KeyText.h"
#include "text/Text.h"
#include "words/Detector.h"

namespace tessarok::measure::test {
namespace {

namespace fs = std::filesystem;
using makedata::DecisionModel;
using makedata::LanguageModel;

std::vector<std::string> linesOf(const std::string& name) {
  std::ifstream stream(fs::path(TESSAROK_TEST_DATA) / name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    if (auto word = text::normalizedWord(line); !word.empty()) lines.push_back(std::move(word));
  }
  return lines;
}

std::string written(const std::string& keys, bool russian) {
  if (!russian) return keys;
  std::string text;
  for (const char key : keys) {
    text += key == '^' || key == '$' ? std::string(1, key) : makedata::russianOf({&key, 1});
  }
  return text;
}

template <typename Keys>
void writeFile(const fs::path& file, const Keys& keys, bool russian) {
  std::vector<std::string> lines;
  for (const std::string& entry : keys)
    lines.push_back(written(entry, russian));
  std::ranges::sort(lines);
  std::ofstream stream(file);
  for (const auto& line : lines)
    stream << line << '\n';
}

LanguageModel modelOf(bool russian) {
  LanguageModel model;
  for (const auto& word : linesOf(russian ? "dict_ru.txt" : "dict_en.txt")) {
    const auto keys = russian ? makedata::keysOf(word) : word;
    model.words.insert(keys);
    // Half of them, so that words with unknown letter groups exist.
    if (model.words.size() % 2 == 0) model.ngrams.add(keys, 1);
  }
  for (const auto& word : linesOf(russian ? "freq_short_ru.txt" : "freq_short_en.txt")) {
    model.shortWords.insert(russian ? makedata::keysOf(word) : word);
  }
  return model;
}

void writeData(const fs::path& directory, const LanguageModel& model, bool russian) {
  const std::string suffix = russian ? "_ru" : "_en";
  writeFile(directory / ("dict" + suffix + ".txt"), model.words, russian);
  writeFile(directory / ("freq_short" + suffix + ".txt"), model.shortWords, russian);
  writeFile(directory / ("proto" + suffix + "2.txt"), model.ngrams.pairs(), russian);
  writeFile(directory / ("proto" + suffix + "3.txt"), model.ngrams.triples(), russian);
  writeFile(directory / ("proto" + suffix + "3b.txt"), model.ngrams.markedTriples(), russian);
}

TEST(DecisionModel, DecidesLikeTheCorrector) {
  const virtualdesktop::TemporaryDirectory data;
  const auto english = modelOf(false);
  const auto russian = modelOf(true);
  ASSERT_GT(english.words.size(), 20U);
  ASSERT_GT(russian.words.size(), 20U);
  writeData(data.path(), english, false);
  writeData(data.path(), russian, true);
  virtualdesktop::Session session(std::nullopt, data.path());
  session.launch();

  const DecisionModel model(english, russian);
  std::vector<std::string> words(english.words.begin(), english.words.end());
  words.insert(words.end(), russian.words.begin(), russian.words.end());
  std::size_t converted = 0;
  for (const auto& word : words) {
    for (const char* head : {"", "'", "[", "un"}) {
      for (const char* tail : {"", ".", ",", "'s", "er", "jq", "y."}) {
        const auto keys = head + word + tail;
        if (Detector::isExcluded(keys)) continue;
        const auto expected = Detector::decide(keys, 0, 0);
        const auto decision = model.typedInEnglish(keys);
        EXPECT_EQ(decision.reason != DecisionModel::Reason::none, expected.has_value()) << keys;
        if (expected) {
          ++converted;
          EXPECT_EQ(decision.converted.size(), keys.size() - expected->trim) << keys;
        }
        const auto image = makedata::russianOf(keys);
        if (Detector::isExcluded(image)) continue;
        EXPECT_EQ(model.typedInRussian(keys).reason != DecisionModel::Reason::none,
                  Detector::decide(image, 0, 0).has_value())
            << image;
      }
    }
  }
  EXPECT_GT(converted, 20U);
}

}  // namespace
}  // namespace tessarok::measure::test
