#include <gtest/gtest.h>
#include <stdexcept>

#include "KeyText.h"

namespace tessarok::makedata::test {
namespace {

TEST(KeyText, SpellsARussianWordByItsKeys) {
  EXPECT_EQ(keysOf("привет"), "ghbdtn");
  EXPECT_EQ(keysOf("шею"), "it.");
  EXPECT_EQ(keysOf("ёхъжэбю"), "`[];',.");
}

TEST(KeyText, FindsTheRussianWordAgain) {
  EXPECT_EQ(russianOf("ghbdtn"), "привет");
  EXPECT_EQ(russianOf("`[];',."), "ёхъжэбю");
}

TEST(KeyText, RefusesWhatIsNoRussianWord) {
  EXPECT_THROW((void)keysOf("Привет"), std::invalid_argument);
  EXPECT_THROW((void)keysOf("hello"), std::invalid_argument);
}

TEST(KeyText, KnowsThePunctuationKeys) {
  EXPECT_TRUE(isPunctuationKey('.'));
  EXPECT_TRUE(isPunctuationKey('`'));
  EXPECT_FALSE(isPunctuationKey('q'));
}

}  // namespace
}  // namespace tessarok::makedata::test
