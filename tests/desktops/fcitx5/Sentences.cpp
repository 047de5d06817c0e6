#include "tests/desktops/fcitx5/Sentences.h"

#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "desktops/layouts/KeyTable.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"
#include "text/Text.h"

namespace tessarok::testing {

namespace {

std::vector<std::string> wordsOf(const char* name) {
  std::istringstream lines(readFile(std::string(TESSAROK_TEST_DATA) + "/" + name));
  std::vector<std::string> words;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.front() != '#') words.push_back(line);
  }
  return words;
}

/// The characters that the keys of a word give in the English layout; empty for words with the key
/// that pauses.
std::string keysOf(const std::string& word, bool isCapital) {
  const auto& english = layouts::KeyTable::english();
  std::string keys;
  for (const char32_t scalar : text::utf16(word)) {
    const auto stroke =
        scalar < 0x80 ? english.strokeFor(scalar) : layouts::KeyTable::russian().strokeFor(scalar);
    if (!stroke) return {};
    const bool shift = stroke->shift || (isCapital && keys.empty());
    keys += static_cast<char>(*english.character(stroke->code, shift));
  }
  return keys.find_first_of("`~") == std::string::npos ? keys : std::string();
}

}  // namespace

std::vector<std::string> sentences(int count, unsigned seed) {
  const auto english = wordsOf("dict_en.txt");
  const auto russian = wordsOf("dict_ru.txt");
  std::mt19937 random(seed);
  const auto below = [&random](std::size_t end) { return random() % end; };
  constexpr std::string_view kEnds[] = {" ", " ", " ", " ", ", ", "! ", " - ", " 12 "};
  std::vector<std::string> all;
  for (int i = 0; i < count; ++i) {
    std::string sentence;
    const auto words = 2 + below(2);
    const bool isMostlyRussian = below(2) == 0;
    for (std::size_t word = 0; word < words; ++word) {
      const bool isRussian = (below(4) != 0) == isMostlyRussian;
      const auto& list = isRussian ? russian : english;
      const auto keys = keysOf(list[below(list.size())], word == 0);
      if (keys.empty()) continue;
      if (!sentence.empty()) sentence += kEnds[below(std::size(kEnds))];
      sentence += keys;
      if (below(10) == 0) sentence += "q\b";
    }
    all.push_back(sentence + "\n");
  }
  return all;
}

std::string onTheVirtualDesktop(const std::string& keys) {
  using nlohmann::json;
  const auto script = json{{"setup", {{"debug", false}}}}.dump() + "\n" +
                      json{{"keys", keys}}.dump() + "\n" + json{{"print", {"text"}}}.dump() + "\n";
  const auto run = runProgram({"replay", "--resources", TESSAROK_TEST_DATA}, script);
  if (run.status != 0) throw std::runtime_error(run.err);
  return json::parse(run.out).at("text").get<std::string>();
}

}  // namespace tessarok::testing
