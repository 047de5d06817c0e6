#include <gtest/gtest.h>

#include "SentenceScore.h"

namespace tessarok::measure::test {
namespace {

TEST(SentenceScore, CountsWordsByTheirLetters) {
  const auto score = scoreSentence("I saw it, - 5 cats.", "I saw it, - 5 cats.");
  EXPECT_EQ(score.words, 6U);
  EXPECT_EQ(score.longWords, 3U);
  EXPECT_EQ(score.longRight, 3U);
  EXPECT_EQ(score.oneLetterWords, 1U);
  EXPECT_EQ(score.oneLetterRight, 1U);
  EXPECT_TRUE(score.firstRight);
  EXPECT_TRUE(score.secondRight);
  EXPECT_TRUE(score.changed.empty());
}

TEST(SentenceScore, LooksAtLettersOnlyForMisses) {
  const auto score = scoreSentence("руки, ноги", "руки? ноги");
  EXPECT_EQ(score.longRight, 2U);
  ASSERT_EQ(score.changed.size(), 1U);
  EXPECT_EQ(score.changed[0].shown, "руки?");
}

TEST(SentenceScore, TellsTheFirstWordsApart) {
  const auto second = scoreSentence("I am here now", "Ш фь here now");
  EXPECT_FALSE(second.firstRight);
  EXPECT_TRUE(second.secondRight);
  EXPECT_EQ(second.oneLetterRight, 0U);
  ASSERT_EQ(second.misses.size(), 1U);
  EXPECT_EQ(second.misses[0].meant, "am");
  const auto third = scoreSentence("he is there", "ру шы there");
  EXPECT_FALSE(third.secondRight);
}

TEST(SentenceScore, SurvivesAScreenThatIsTooShort) {
  const auto score = scoreSentence("one two", "one");
  EXPECT_EQ(score.longRight, 1U);
  EXPECT_EQ(score.changed.size(), 1U);
}

TEST(SentenceScore, NamesTheFirstWordOfTwoLetters) {
  EXPECT_EQ(scoreSentence("- Я? Да, я.", "- Я? Lf? я.").firstWord, "да,");
  EXPECT_EQ(scoreSentence("\"Oh\" he", "\"Oh\" he").firstWord, "oh\"");
}

}  // namespace
}  // namespace tessarok::measure::test
