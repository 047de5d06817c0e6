// Hundreds of sentences, typed as fast as the server takes them, come out as on the virtual
// desktop.

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "desktops/layouts/KeyTable.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/support/ChildProcess.h"
#include "text/Text.h"
#ifdef TESSAROK_LARGE_APPLICATIONS
#include "tests/desktops/x11/LargeApplications.h"
#endif
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {
namespace {

constexpr int kSentences = 240;
/// These are some 20,000 keys, and a browser takes up to a millisecond for each of them, on a
/// machine that it has for itself.
constexpr double kPatienceWithSentences = 4 * kPatience;

std::vector<std::string> wordsOf(const char* name) {
  std::ifstream file(std::string(TESSAROK_TEST_DATA) + "/" + name);
  std::vector<std::string> words;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.front() != '#') words.push_back(line);
  }
  return words;
}

/// The characters that the keys of a word give in the English layout.
std::string keysOf(const std::string& word, bool capital) {
  std::string keys;
  for (const char32_t scalar : text::utf16(word)) {
    auto stroke = layouts::KeyTable::russian().strokeFor(scalar);
    if (scalar < 0x80) stroke = layouts::KeyTable::english().strokeFor(scalar);
    if (!stroke) return {};
    const bool shift = stroke->shift || (capital && keys.empty());
    keys += static_cast<char>(*layouts::KeyTable::english().character(stroke->code, shift));
  }
  // The key that pauses.
  return keys.find('`') == std::string::npos ? keys : std::string();
}

/// Words of both languages with no regard to the layout in force, capitals, signs and typing errors
/// put right, the same ones in every run.
std::string sentences() {
  const auto english = wordsOf("dict_en.txt");
  const auto russian = wordsOf("dict_ru.txt");
  std::mt19937 random(20260);  // NOLINT(cert-msc51-cpp): the same sentences every time
  const auto below = [&random](std::size_t end) { return random() % end; };
  constexpr std::string_view kEnds[] = {" ", " ", " ", " ", " ", ", ", "! ", "? ", " - ", " 12 "};
  std::string all;
  for (int i = 0; i < kSentences; ++i) {
    const auto count = 3 + below(6);
    const bool mostlyRussian = below(2) == 0;
    for (std::size_t word = 0; word < count; ++word) {
      const bool isRussian = (below(5) != 0) == mostlyRussian;
      const auto& words = isRussian ? russian : english;
      const auto keys = keysOf(words[below(words.size())], word == 0);
      if (keys.empty()) continue;
      all += keys;
      if (below(20) == 0) all += "q\b";
      all += kEnds[below(std::size(kEnds))];
    }
    all += "\n";
  }
  return all;
}

std::string onTheVirtualDesktop(const std::string& keys) {
  std::string script = nlohmann::json{{"setup", {{"debug", false}}}}.dump() + "\n";
  script += nlohmann::json{{"keys", keys}}.dump() + "\n";
  script += nlohmann::json{{"print", {"text"}}}.dump() + "\n";
  const auto run = runProgram({"replay", "--resources", TESSAROK_TEST_DATA}, script);
  if (run.status != 0) throw std::runtime_error(run.err);
  return nlohmann::json::parse(run.out).at("text").get<std::string>();
}

template <typename Window>
class X11Sentences : public ::testing::Test {};

using Windows = ::testing::Types<TESSAROK_WINDOWS>;
TYPED_TEST_SUITE(X11Sentences, Windows);

TYPED_TEST(X11Sentences, ComeOutAsOnTheVirtualDesktop) {
  const auto keys = sentences();
  ASSERT_EQ(std::count(keys.begin(), keys.end(), '\n'), kSentences);
  const auto expected = onTheVirtualDesktop(keys);
  // Most of it has to be retyped: what comes out is not what the English layout gives.
  ASSERT_GT(expected.size(), keys.size() + keys.size() / 4);
  XServer server;
  TypeParam window(server);
  const Tessarok program(server);
  server.type(keys);
  EXPECT_TRUE(window.shows(expected, kPatienceWithSentences)) << program.errors();
  const auto shown = window.text();
  const auto [at, _] = std::mismatch(shown.begin(), shown.end(), expected.begin(), expected.end());
  const auto place = static_cast<std::size_t>(at - shown.begin());
  EXPECT_EQ(shown.substr(place, 200), expected.substr(place, 200)) << "at byte " << place;
}

}  // namespace
}  // namespace tessarok::testing
