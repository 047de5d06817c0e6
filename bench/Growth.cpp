// How the time of a decision grows with the dictionary and with the word.
//
// usage: tessarok_growth_bench WORDS RESOURCES
//   RESOURCES: the directory of the word data, of which all but the dictionaries are used.
// Makes a Russian dictionary of so many words and decides about words typed in the wrong layout.
// Prints one JSON object; times are nanoseconds.

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "desktops/virtual/Session.h"
#include "words/Detector.h"
#include "words/Dict.h"
#include "words/LayoutMap.h"

namespace {

using namespace tessarok;

constexpr std::size_t kLetters = 32;
/// The first five letters number the words.
constexpr std::size_t kNumbers = kLetters * kLetters * kLetters * kLetters * kLetters;
constexpr std::size_t kSample = 20'000;
/// Few enough to be in the caches, as the words are that somebody uses.
constexpr std::size_t kFamiliar = 50;
constexpr std::size_t kRounds = 251;

void appendLetter(std::size_t letter, std::string& word) {
  word += static_cast<char>(letter < 16 ? 0xD0 : 0xD1);
  word += static_cast<char>(letter < 16 ? 0xB0 + letter : 0x80 + letter - 16);
}

/// The words come in the order of the dictionary and are as long as Russian ones: 11 letters.
std::string numberedWord(std::size_t number, std::mt19937& random) {
  std::string word;
  for (std::size_t place = kNumbers / kLetters; place > 0; place /= kLetters)
    appendLetter(number / place % kLetters, word);
  const auto more = 3 + random() % 7;
  for (std::size_t i = 0; i < more; ++i)
    appendLetter(random() % kLetters, word);
  return word;
}

/// Writes the dictionary; some of its words as they are typed in the wrong layout.
std::vector<std::string> writeDictionary(const std::filesystem::path& file, std::size_t words) {
  std::mt19937 random(1);
  std::ofstream out(file, std::ios::binary);
  std::vector<std::string> sample;
  const auto step = kNumbers / words;
  for (std::size_t i = 0; i < words; ++i) {
    const auto word = numberedWord(i * step, random);
    out << word << '\n';
    if (random() % words < 2 * kSample)
      sample.push_back(LayoutMap::convert(word, Language::russian));
  }
  std::shuffle(sample.begin(), sample.end(), random);
  sample.resize(std::min(sample.size(), kSample));
  return sample;
}

/// The median over many short stretches, so that what else the machine does shows little.
double timeOfOne(const std::vector<std::string>& words, bool& allFixed) {
  std::vector<double> times;
  const auto stretch = std::max<std::size_t>(words.size() / kRounds, 1);
  for (std::size_t start = 0; start + stretch <= words.size(); start += stretch) {
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t i = start; i < start + stretch; ++i) {
      const auto decision = Detector::decide(words[i], 0, 0);
      allFixed = allFixed && decision && decision->confidence == Detector::Confidence::high;
    }
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
    times.push_back(took.count() / static_cast<double>(stretch));
  }
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                   times.end());
  return times[times.size() / 2];
}

/// The same few words again and again.
std::vector<std::string> familiar(const std::vector<std::string>& sample) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < kSample; ++i)
    words.push_back(sample[i % std::min(kFamiliar, sample.size())]);
  return words;
}

/// Words that nothing confirms, of every length and with punctuation keys behind them.
nlohmann::json timesByLength() {
  nlohmann::json times = nlohmann::json::array();
  std::mt19937 random(2);
  for (std::size_t length = 2; length <= 64; length += length < 16 ? 2 : 8) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < 2000; ++i) {
      std::string word;
      for (std::size_t letter = 0; letter < length; ++letter)
        word += static_cast<char>('a' + random() % 26);
      words.push_back(std::move(word));
    }
    bool ignored = true;
    const auto plain = timeOfOne(words, ignored);
    for (auto& word : words)
      word += ",.;',.;',.";
    times.push_back(
        {{"length", length}, {"plain", plain}, {"punctuation", timeOfOne(words, ignored)}});
  }
  return times;
}

}  // namespace

int main(int argc, char** argv) {
  const auto words = argc == 3 ? std::strtoull(argv[1], nullptr, 10) : 0;
  if (words == 0 || words > kNumbers) {
    std::cerr << "usage: tessarok_growth_bench WORDS RESOURCES\n";
    return 2;
  }
  const virtualdesktop::TemporaryDirectory data;
  for (const auto& entry : std::filesystem::directory_iterator(argv[2])) {
    const auto name = entry.path().filename();
    if (name == "dict_ru.txt" || name.extension() != ".txt") continue;
    std::filesystem::create_symlink(std::filesystem::absolute(entry.path()), data.path() / name);
  }
  const auto sample = writeDictionary(data.path() / "dict_ru.txt", words);
  virtualdesktop::Session session(std::nullopt, data.path());
  session.launch();
  if (!Dict::en().isAvailable() || !Dict::ru().isAvailable()) {
    std::cerr << "the word data are missing; run make data\n";
    return 2;
  }
  bool allFixed = true;
  nlohmann::json result{{"words", words}, {"bytes", Dict::ru().data().size()}};
  static_cast<void>(timeOfOne(familiar(sample), allFixed));
  result["familiar"] = timeOfOne(familiar(sample), allFixed);
  result["random"] = timeOfOne(sample, allFixed);
  if (!allFixed) {
    std::cerr << "a word of the dictionary was not put right\n";
    return 1;
  }
  result["by_length"] = timesByLength();
  std::cout << result.dump(2) << '\n';
  return 0;
}
