#include <cerrno>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "desktops/posix/ProgramAnswer.h"

namespace tessarok::posix {
namespace {

/// Milliseconds: longer than anything takes on a busy machine, and what is not waited for.
constexpr int kLong = 30000;
constexpr int kShort = 50;

bool hasChildren() {
  return ::waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

TEST(ProgramAnswer, IsWhatTheProgramPrints) {
  EXPECT_EQ(answerOf({"printf", "%s\n%s", "one", "two"}, kLong), "one\ntwo");
  EXPECT_EQ(answerOf({"true"}, kLong), "");
  EXPECT_EQ(answerOf({"sh", "-c", "echo said; echo complained >&2"}, kLong), "said\n");
}

TEST(ProgramAnswer, IsNotCutShort) {
  const auto answer = answerOf({"seq", "100000"}, kLong);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->size(), 588895u);
}

TEST(ProgramAnswer, IsAbsentWhenTheProgramFails) {
  EXPECT_EQ(answerOf({"sh", "-c", "echo said; exit 1"}, kLong), std::nullopt);
  EXPECT_EQ(answerOf({"sh", "-c", "echo said; kill -9 $$"}, kLong), std::nullopt);
  EXPECT_EQ(answerOf({"/nonexistent/program"}, kLong), std::nullopt);
}

TEST(ProgramAnswer, IsAbsentWhenTheProgramHangsAndTheProgramIsEnded) {
  EXPECT_EQ(answerOf({"sleep", "1000"}, kShort), std::nullopt);
  EXPECT_FALSE(hasChildren());
}

TEST(ProgramAnswer, IsAbsentWhenTheProgramStaysAfterItsLastWord) {
  EXPECT_EQ(answerOf({"sh", "-c", "echo said; exec >&-; exec sleep 1000"}, kShort), std::nullopt);
  EXPECT_FALSE(hasChildren());
}

TEST(ProgramAnswer, HasNothingToRead) {
  EXPECT_EQ(answerOf({"cat"}, kLong), "");
}

}  // namespace
}  // namespace tessarok::posix
