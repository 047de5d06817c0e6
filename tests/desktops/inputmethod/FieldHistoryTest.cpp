#include <gtest/gtest.h>
#include <string>

#include "desktops/inputmethod/FieldHistory.h"

namespace tessarok::inputmethod {
namespace {

using Effect = FieldHistory::Effect;
using Verdict = FieldHistory::Verdict;

TEST(FieldHistory, KnowsNothingAtFirst) {
  const FieldHistory history;
  EXPECT_FALSE(history.isShown());
  EXPECT_FALSE(history.awaited());
  EXPECT_FALSE(history.last(1));
}

TEST(FieldHistory, TakesTheFirstReportForWhatTheFieldHolds) {
  FieldHistory history;
  EXPECT_EQ(history.reported("wo"), Verdict::fits);
  EXPECT_TRUE(history.isShown());
  EXPECT_EQ(history.last(2), "wo");
  EXPECT_FALSE(history.arrival());
}

TEST(FieldHistory, AwaitsWhatWasTypedUntilItIsReported) {
  FieldHistory history;
  static_cast<void>(history.reported("wo"));
  history.typed("r", 1);
  history.typed("d", 2);
  EXPECT_EQ(history.awaited(), Effect::text);
  EXPECT_EQ(history.reported("wor"), Verdict::fits);
  EXPECT_EQ(history.arrival()->sentAt, 1);
  EXPECT_FALSE(history.isShown());
  EXPECT_EQ(history.reported("word"), Verdict::fits);
  EXPECT_EQ(history.arrival()->sentAt, 2);
  EXPECT_TRUE(history.isShown());
}

TEST(FieldHistory, AReportThatIsLateShowsNothingNew) {
  FieldHistory history;
  static_cast<void>(history.reported("a"));
  history.typed("b", 1);
  EXPECT_EQ(history.reported("a"), Verdict::fits);
  EXPECT_FALSE(history.arrival());
  EXPECT_EQ(history.awaited(), Effect::text);
}

TEST(FieldHistory, ALetterAndBackspaceAreNotSeenInAReportFromBeforeThem) {
  FieldHistory history;
  static_cast<void>(history.reported("wor"));
  history.typed("q", 1);
  history.typed("q", 2);
  history.erased(1, 3);
  // After the first q, or after all?
  EXPECT_EQ(history.reported("worq"), Verdict::fits);
  EXPECT_EQ(history.awaited(), Effect::erasure);
  EXPECT_EQ(history.reported("worqq"), Verdict::fits);
  EXPECT_EQ(history.awaited(), Effect::erasure);
  EXPECT_EQ(history.reported("worq"), Verdict::fits);
  EXPECT_FALSE(history.awaited());
}

TEST(FieldHistory, ReportsMayLeaveStepsOut) {
  FieldHistory history;
  static_cast<void>(history.reported(""));
  history.typed("a", 1);
  history.typed("b", 2);
  history.erased(2, 3);
  history.typed("word", 4);
  EXPECT_EQ(history.reported("word"), Verdict::fits);
  EXPECT_EQ(history.arrival()->effect, Effect::text);
  EXPECT_EQ(history.arrival()->sentAt, 4);
  EXPECT_TRUE(history.isShown());
}

TEST(FieldHistory, AnUnknownKeyHasComeWhenTheTextIsNoneOfThoseBeforeIt) {
  FieldHistory history;
  static_cast<void>(history.reported("wor"));
  history.typed("d", 1);
  history.unknownKey(2);
  EXPECT_EQ(history.reported("wor"), Verdict::fits);
  EXPECT_EQ(history.reported("word"), Verdict::fits);
  EXPECT_EQ(history.awaited(), Effect::unknown);
  EXPECT_EQ(history.reported(""), Verdict::fits);
  EXPECT_FALSE(history.awaited());
  EXPECT_EQ(history.arrival()->effect, Effect::unknown);
}

TEST(FieldHistory, LettersBehindAnUnknownKeyAreFound) {
  FieldHistory history;
  static_cast<void>(history.reported("word"));
  history.unknownKey(1);
  history.typed("n", 2);
  history.typed("o", 3);
  EXPECT_EQ(history.reported("word\nn"), Verdict::fits);
  EXPECT_EQ(history.awaited(), Effect::text);
  // What stood there before is known now, and with it how long the text is to be.
  EXPECT_EQ(history.reported("other no"), Verdict::unclear);
  EXPECT_EQ(history.reported("word\nno"), Verdict::fits);
  EXPECT_TRUE(history.isShown());
}

TEST(FieldHistory, ALetterTwiceBehindAnUnknownKeyIsNotClear) {
  FieldHistory history;
  static_cast<void>(history.reported("word"));
  history.unknownKey(1);
  history.typed("a", 2);
  history.typed("a", 3);
  EXPECT_EQ(history.reported("aa"), Verdict::unclear);
  EXPECT_EQ(history.awaited(), Effect::text);
  history.typed("b", 4);
  EXPECT_EQ(history.reported("aab"), Verdict::fits);
  EXPECT_TRUE(history.isShown());
}

TEST(FieldHistory, TellsAnotherPlace) {
  FieldHistory history;
  static_cast<void>(history.reported("word"));
  EXPECT_EQ(history.reported("wo"), Verdict::elsewhere);
  EXPECT_TRUE(history.isShown());
  EXPECT_EQ(history.last(2), "wo");
}

TEST(FieldHistory, TheSameEndInALongerTextIsAnotherPlace) {
  FieldHistory history;
  static_cast<void>(history.reported("a word"));
  history.typed("s", 1);
  static_cast<void>(history.reported("a words"));
  EXPECT_EQ(history.reported("a word and words"), Verdict::elsewhere);
}

TEST(FieldHistory, CountsCharactersAsAPersonDoes) {
  FieldHistory history;
  static_cast<void>(history.reported(""));
  history.typed("е\u0301ж", 1);
  EXPECT_EQ(history.last(2), "е\u0301ж");
  history.erased(2, 2);
  history.typed("я", 3);
  EXPECT_EQ(history.reported("я"), Verdict::fits);
  EXPECT_TRUE(history.isShown());
}

TEST(FieldHistory, ErasingMoreThanIsKnownLeavesNothingKnown) {
  FieldHistory history;
  history.typed("ab", 1);
  history.erased(3, 2);
  EXPECT_FALSE(history.last(1));
  EXPECT_EQ(history.reported("other"), Verdict::fits);
}

TEST(FieldHistory, BackspaceInAnEmptyFieldIsAwaitedAllTheSame) {
  FieldHistory history;
  static_cast<void>(history.reported(""));
  history.erased(1, 1);
  EXPECT_EQ(history.reported(""), Verdict::fits);
  EXPECT_EQ(history.awaited(), Effect::erasure);
  history.typed("a", 2);
  EXPECT_EQ(history.reported("a"), Verdict::fits);
  EXPECT_FALSE(history.awaited());
}

TEST(FieldHistory, KnowsWhatWasTypedWithoutReports) {
  FieldHistory history;
  history.typed("wo", 1);
  history.typed("rd", 2);
  history.erased(1, 3);
  EXPECT_EQ(history.last(3), "wor");
  EXPECT_EQ(history.awaited(), Effect::erasure);
  EXPECT_FALSE(history.isShown());
}

TEST(FieldHistory, GoesOnWhenReportsEnd) {
  FieldHistory history;
  static_cast<void>(history.reported("wor"));
  history.typed("d", 1);
  history.reportsEnded();
  EXPECT_EQ(history.last(4), "word");
  EXPECT_FALSE(history.isShown());
  EXPECT_FALSE(history.awaited());
}

TEST(FieldHistory, ForgetsAll) {
  FieldHistory history;
  static_cast<void>(history.reported("wor"));
  history.typed("d", 1);
  history.forget();
  EXPECT_FALSE(history.awaited());
  EXPECT_FALSE(history.last(1));
  EXPECT_EQ(history.reported("anything"), Verdict::fits);
}

TEST(FieldHistory, ReportsOfLongTextsMayBeCutAtTheirBeginning) {
  FieldHistory history;
  const std::string text(2000, 'x');
  static_cast<void>(history.reported(text));
  history.typed("ab", 1);
  EXPECT_EQ(history.reported(text.substr(2) + "ab"), Verdict::fits);
  EXPECT_TRUE(history.isShown());
}

// As GTK 4 reports.
TEST(FieldHistory, ReportsMayBeOfTheLastWordsOnly) {
  FieldHistory history;
  static_cast<void>(history.reported("one two three "));
  history.typed("f", 1);
  history.typed("o", 2);
  EXPECT_EQ(history.reported("two three f"), Verdict::fits);
  EXPECT_TRUE(history.isWindowed());
  EXPECT_EQ(history.awaited(), Effect::text);
  EXPECT_EQ(history.reported("two three fo"), Verdict::fits);
  EXPECT_TRUE(history.isShown());
  history.erased(2, 3);
  EXPECT_EQ(history.reported("one two three "), Verdict::fits);
  EXPECT_TRUE(history.isShown());
}

TEST(FieldHistory, AWindowThatMovesWithoutAKeyIsAnotherPlace) {
  FieldHistory history;
  static_cast<void>(history.reported("one two three "));
  history.typed("f", 1);
  static_cast<void>(history.reported("two three f"));
  ASSERT_TRUE(history.isWindowed());
  EXPECT_EQ(history.reported("three f"), Verdict::elsewhere);
}

TEST(FieldHistory, AShorterTextOfOneWordIsNoWindow) {
  FieldHistory history;
  static_cast<void>(history.reported("aba"));
  history.typed("b", 1);
  EXPECT_EQ(history.reported("ab"), Verdict::unclear);
  EXPECT_FALSE(history.isWindowed());
}

TEST(FieldHistory, KeepsAnEndOfAWholeNumberOfCharacters) {
  FieldHistory history;
  std::string text;
  for (int i = 0; i < 1000; ++i)
    text += "я";
  history.typed(text, 1);
  EXPECT_EQ(history.last(256)->size(), 512u);
  EXPECT_FALSE(history.last(257));
}

TEST(FieldHistory, TakesTheOldestOfVeryManyForArrived) {
  FieldHistory history;
  static_cast<void>(history.reported(""));
  for (int i = 0; i < 1000; ++i)
    history.typed("a", i);
  EXPECT_EQ(history.reported(std::string(1000, 'a')), Verdict::fits);
  EXPECT_TRUE(history.isShown());
}

}  // namespace
}  // namespace tessarok::inputmethod
