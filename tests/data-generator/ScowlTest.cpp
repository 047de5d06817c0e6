#include "Scowl.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

TEST(Scowl, TakesCommonListsAndLeavesRareOnes) {
  for (const char* name : {"english-words.10", "american-words.70", "british-upper.50",
                           "english-proper-names.70", "english-abbreviations.50"}) {
    EXPECT_TRUE(isWantedScowlList(name)) << name;
  }
  for (const char* name : {"english-words.80", "english-abbreviations.60", "canadian-words.10",
                           "english-contractions.10", "special-roman-numerals.35", "README",
                           "english-words.", "english-words.1x", "words.10"}) {
    EXPECT_FALSE(isWantedScowlList(name)) << name;
  }
}

TEST(Scowl, FindsTheListsInTheOrderOfTheirNames) {
  const TemporaryDirectory directory;
  for (const char* name : {"english-words.20", "american-words.35", "english-words.10", "README"}) {
    writeFile(directory.path() / name, "a\n");
  }
  std::vector<std::string> names;
  for (const auto& list : findScowlLists(directory.path()))
    names.push_back(list.filename());
  EXPECT_EQ(names, (std::vector<std::string>{"american-words.35", "english-words.10",
                                             "english-words.20"}));
}

TEST(Scowl, RefusesADirectoryWithoutTheCommonWords) {
  const TemporaryDirectory directory;
  EXPECT_EQ(inputErrorOf([&] { (void)findScowlLists(directory.path()); }),
            directory.path().string() + ": the list english-words.10 is missing");
  const auto missing = directory.path() / "none";
  EXPECT_EQ(inputErrorOf([&] { (void)findScowlLists(missing); }),
            missing.string() + ": cannot be listed: No such file or directory");
}

TEST(Scowl, ReadsOneWordALine) {
  std::vector<std::string> words;
  readScowlList("a\ncafé\n", "l",
                [&words](std::u32string_view word) { words.push_back(encodeUtf8(word)); });
  EXPECT_EQ(words, (std::vector<std::string>{"a", "café"}));
}

TEST(Scowl, RefusesLinesThatAreNotOneWord) {
  const auto ignore = [](std::u32string_view) {};
  EXPECT_EQ(inputErrorOf([&] { readScowlList("a\n\nb\n", "l", ignore); }),
            "l:2: a line must hold one word");
  EXPECT_EQ(inputErrorOf([&] { readScowlList("a\nb c\n", "l", ignore); }),
            "l:2: a line must hold one word");
}

TEST(Scowl, TellsTheSizeOfAList) {
  EXPECT_EQ(sizeOfScowlList("/usr/share/dict/scowl/english-words.10"), 10);
  EXPECT_EQ(sizeOfScowlList("special-hacker.50"), 50);
}

}  // namespace
}  // namespace tessarok::makedata::test
