#include <gtest/gtest.h>

#include "MissRule.h"

namespace tessarok::measure::test {
namespace {

TEST(MissRule, KnowsPunctuationThatIsALetter) {
  EXPECT_EQ(missRuleOf("However, it is", 0, 8), MissRule::punctuation);
  EXPECT_EQ(missRuleOf("It's so", 0, 4), MissRule::punctuation);
  EXPECT_EQ(missRuleOf("(Yes) so", 0, 5), MissRule::other);
  // A Russian word has no such key: its letters are typed by them.
  EXPECT_EQ(missRuleOf("Однако, это", 0, 7), MissRule::other);
}

TEST(MissRule, KnowsThePauseAndItsEnd) {
  EXPECT_EQ(missRuleOf("Всё хорошо", 0, 3), MissRule::pause);
  EXPECT_EQ(missRuleOf("Всё хорошо", 4, 6), MissRule::pause);
  EXPECT_EQ(missRuleOf("Всё хорошо у нас здесь и сегодня, потому", 34, 6), MissRule::other);
  EXPECT_EQ(missRuleOf("use `ls` here", 9, 4), MissRule::pause);
}

TEST(MissRule, KnowsTwoLetters) {
  EXPECT_EQ(missRuleOf("Ах, нет", 0, 3), MissRule::twoLetters);
  EXPECT_EQ(missRuleOf("If so", 0, 2), MissRule::twoLetters);
  EXPECT_EQ(missRuleOf("The end", 0, 3), MissRule::other);
}

}  // namespace
}  // namespace tessarok::measure::test
