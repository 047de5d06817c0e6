#include <gtest/gtest.h>
#include <random>
#include <string>

#include "words/WordList.h"

namespace tessarok {
namespace {

TEST(WordList, LinesAreTrimmedBeforeTheyAreJudged) {
  EXPECT_EQ(WordList::parse("  СЛОВО \n\t# comment\n#слово2\nдва слова\n\nкеш # хвост").toSet(),
            (WordSet{"два слова", "кеш # хвост", "слово"}));
  EXPECT_EQ(WordList::parse("раз\r\nдва\r\n").toSet(), (WordSet{"два", "раз"}));
  EXPECT_TRUE(WordList::parse("").empty());
  EXPECT_FALSE(WordList().contains(""));
}

// The reference is a set of strings.
TEST(WordList, AnswersAsASetDoes) {
  std::mt19937 random(1);
  const auto word = [&random] {
    std::string made;
    for (auto length = 1 + random() % 3; length > 0; --length)
      made += random() % 4 == 0 ? "я" : std::string(1, static_cast<char>('a' + random() % 4));
    return made;
  };
  for (int run = 0; run < 200; ++run) {
    WordSet expected;
    std::string text;
    for (auto count = random() % 40; count > 0; --count) {
      const auto added = word();
      expected.insert(added);
      text += added + "\n";
    }
    const auto list = WordList::parse(text);
    EXPECT_EQ(list.toSet(), expected);
    EXPECT_EQ(list.size(), expected.size());
    EXPECT_EQ(WordList::of(expected).toSet(), expected);
    for (int question = 0; question < 40; ++question) {
      const auto asked = word();
      EXPECT_EQ(list.contains(asked), expected.contains(asked)) << asked;
    }
  }
}

TEST(WordList, IsGivenUpWhenItIsNotWantedAnyMore) {
  std::string text;
  for (int i = 0; i < 100'000; ++i)
    text += "w" + std::to_string(i * 7919 % 100'000) + "\n";
  int questions = 0;
  EXPECT_EQ(WordList::parse(text, [&] { return ++questions > 0; }).size(), 100'000u);
  // Also in the middle of the sort, which is the longer half of the work.
  EXPECT_GT(questions, 2);
  for (int refused = 1; refused <= questions; ++refused) {
    int asked = 0;
    EXPECT_TRUE(WordList::parse(text, [&] { return ++asked < refused; }).empty()) << refused;
  }
}

}  // namespace
}  // namespace tessarok
