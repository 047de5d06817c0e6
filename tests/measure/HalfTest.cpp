#include <gtest/gtest.h>
#include <string>

#include "Half.h"

namespace tessarok::measure::test {
namespace {

TEST(Half, NeverChanges) {
  // The tables in the repository were counted with these very halves.
  EXPECT_EQ(halfOf("Hello, world."), halfOf(std::string("Hello, ") + "world."));
  std::string halves;
  for (const char* sentence : {"one", "two", "three", "four", "five", "six", "seven", "eight"}) {
    halves += halfOf(sentence) == Half::making ? 'm' : 'j';
  }
  EXPECT_EQ(halves, "mjjmjjmj");
}

TEST(Half, AreOfOneSize) {
  int making = 0;
  for (int i = 0; i < 1000; ++i) {
    if (halfOf("sentence number " + std::to_string(i)) == Half::making) ++making;
  }
  EXPECT_GT(making, 400);
  EXPECT_LT(making, 600);
}

TEST(Half, LeaveAThirdToTheEndThatIsOfBoth) {
  int unseen = 0;
  int unseenOfMaking = 0;
  for (int i = 0; i < 3000; ++i) {
    const auto sentence = "sentence number " + std::to_string(i);
    if (!isOfUnseenThird(sentence)) continue;
    ++unseen;
    if (halfOf(sentence) == Half::making) ++unseenOfMaking;
  }
  EXPECT_GT(unseen, 900);
  EXPECT_LT(unseen, 1100);
  EXPECT_GT(unseenOfMaking, 400);
  EXPECT_LT(unseenOfMaking, 600);
}

TEST(Half, HasAName) {
  EXPECT_EQ(halfNamed("making"), Half::making);
  EXPECT_EQ(halfNamed("judging"), Half::judging);
  EXPECT_EQ(halfNamed("all"), std::nullopt);
}

}  // namespace
}  // namespace tessarok::measure::test
