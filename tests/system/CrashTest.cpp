// The program is killed while it learns, again and again in the same home: what it had reported
// as saved is there after the next start, and no file is ever half a file.

#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <random>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"
#include "words/LayoutMap.h"

namespace tessarok {
namespace {

using nlohmann::json;
using testing::ChildProcess;
using Counts = std::map<std::string, int>;

constexpr int kCrashes = 200;
constexpr int kRejectionsARun = 8;
constexpr int kPromoted = 3;

/// Russian words, as they come out on the English layout, that are fixed whenever they are typed.
std::vector<std::string> fixableWords() {
  std::vector<std::string> words;
  const auto text = testing::readFile(std::string(TESSAROK_TEST_DATA) + "/dict_ru.txt");
  std::size_t start = 0;
  for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
    auto typed =
        LayoutMap::convert(std::string_view(text).substr(start, end - start), Language::russian);
    start = end + 1;
    const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
    if (typed.size() >= 4 && std::all_of(typed.begin(), typed.end(), isLetter)) {
      words.push_back(std::move(typed));
    }
  }
  words.resize(std::min<std::size_t>(words.size(), 120));
  return words;
}

/// Types a word, takes its fix back with ⌥Space, and asks for the files.
std::string rejection(const std::string& word) {
  return R"({"select": "com.apple.keylayout.US"})"
         "\n"
         R"({"keys": "\n)" +
         word +
         R"( "})"
         "\n"
         R"({"down": {"code": 49, "mods": ["option"]}})"
         "\n"
         R"({"up": {"code": 49}})"
         "\n"
         R"({"print": ["files"]})"
         "\n";
}

/// How often each word was rejected, as the files say; a listed word counts as promoted. Fails on
/// a line that is not whole.
Counts countsOf(const json& files, const std::vector<std::string>& vocabulary) {
  Counts counts;
  const auto check = [&](const std::string& word, const std::string& file) {
    EXPECT_NE(std::find(vocabulary.begin(), vocabulary.end(), word), vocabulary.end())
        << "half a line in " << file << ": " << word;
  };
  for (const std::string name : {"ignored.txt", "rejects.txt"}) {
    if (!files.contains(name)) continue;
    const std::string text = files[name];
    EXPECT_TRUE(text.ends_with('\n')) << name;
    std::size_t start = 0;
    for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', start)) {
      const auto line = text.substr(start, end - start);
      start = end + 1;
      if (name == "ignored.txt") {
        check(line, name);
        counts[line] = kPromoted;
        continue;
      }
      const auto tab = line.find('\t');
      if (tab == std::string::npos) {
        ADD_FAILURE() << "half a line in " << name << ": " << line;
        continue;
      }
      check(line.substr(0, tab), name);
      const auto count = std::stoi(line.substr(tab + 1));
      EXPECT_EQ(line.substr(tab + 1), std::to_string(count));
      EXPECT_TRUE(count >= 1 && count <= kPromoted) << line;
      counts[line.substr(0, tab)] = std::max(counts[line.substr(0, tab)], count);
    }
  }
  return counts;
}

TEST(Crash, WhatWasReportedAsSavedIsThereAfterTheNextStart) {
  const auto words = fixableWords();
  ASSERT_GE(words.size(), 50u);
  const virtualdesktop::TemporaryDirectory home;
  const std::vector<std::string> arguments = {"--resources", TESSAROK_TEST_DATA, "replay", "--home",
                                              home.path()};
  std::mt19937 random(20240229);
  Counts reported;
  int learned = 0;
  for (int crash = 0; crash <= kCrashes; ++crash) {
    ChildProcess program(arguments);
    ASSERT_TRUE(program.send("{\"print\": [\"files\", \"lists\"]}\n"));
    const auto start = json::parse(program.receive().value());
    const auto found = countsOf(start["files"], words);
    for (const auto& [word, count] : reported) {
      const auto entry = found.find(word);
      ASSERT_NE(entry, found.end()) << word << " was lost by crash " << crash;
      ASSERT_GE(entry->second, count) << word << " after crash " << crash;
    }
    for (const auto& [word, count] : found) {
      const auto& ignored = start["lists"]["ignored"];
      const bool isListed = std::find(ignored.begin(), ignored.end(), word) != ignored.end();
      ASSERT_EQ(isListed, count == kPromoted) << word;
    }
    reported = found;
    // All lines are under way at once; how far the program got when it is killed is up to the
    // number of answers waited for and to the scheduler.
    std::vector<std::string> chosen = words;
    std::shuffle(chosen.begin(), chosen.end(), random);
    std::string lines;
    for (int i = 0; i < kRejectionsARun; ++i)
      lines += rejection(chosen[static_cast<std::size_t>(i)]);
    ASSERT_TRUE(program.send(lines));
    const auto answers = random() % kRejectionsARun;
    for (std::size_t i = 0; i < answers; ++i) {
      const auto saved = countsOf(json::parse(program.receive().value())["files"], words);
      const auto& word = chosen[i];
      const auto before = reported.contains(word) ? reported[word] : 0;
      ASSERT_EQ(saved.contains(word) ? saved.at(word) : 0, std::min(before + 1, kPromoted)) << word;
      learned += before < kPromoted ? 1 : 0;
      reported = saved;
    }
    program.kill();
    if (HasFailure()) return;
  }
  EXPECT_GT(learned, 200);
}

}  // namespace
}  // namespace tessarok
