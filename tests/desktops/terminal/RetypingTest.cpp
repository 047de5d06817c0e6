#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/Retyping.h"

namespace tessarok::terminal {
namespace {

class RetypingTest : public ::testing::Test {
 protected:
  RetypingTest() {
    output_.screen().setSize(10, 20);
    output_.feed("\x1b[?1049h\x1b[1;1H");
  }
  void SetUp() override {
    ASSERT_EQ(::pipe2(ends_, O_CLOEXEC | O_NONBLOCK), 0);
    queue_.emplace(ends_[1]);
    retyping_.emplace(output_.screen(), *queue_);
  }
  void TearDown() override {
    ::close(ends_[0]);
    ::close(ends_[1]);
  }
  void shows(std::string_view bytes) {
    output_.feed(bytes);
    retyping_->noteOutput();
  }
  /// What the program got since this was asked last.
  std::string sent() {
    EXPECT_TRUE(queue_->flush());
    char text[256];
    const auto count = ::read(ends_[0], text, sizeof text);
    return {text, static_cast<std::size_t>(count > 0 ? count : 0)};
  }

  int ends_[2] = {-1, -1};
  ProgramOutput output_;
  std::optional<posix::WriteQueue> queue_;
  std::optional<Retyping> retyping_;
};

TEST_F(RetypingTest, TheNewTextComesWhenTheOldOneHasGone) {
  shows("a ghb");
  ASSERT_TRUE(retyping_->begin(U"ghb", '\x7f', "при"));
  EXPECT_EQ(sent(), "\x7f\x7f\x7f");
  EXPECT_TRUE(retyping_->isUnderWay());
  shows("\b \b");
  EXPECT_EQ(sent(), "");
  shows("\b \b\b \b");
  EXPECT_EQ(sent(), "при");
  EXPECT_FALSE(retyping_->isUnderWay());
}

TEST_F(RetypingTest, TextBehindTheCursorMovesUp) {
  shows("ghb and more\x1b[1;4H");
  ASSERT_TRUE(retyping_->begin(U"ghb", '\x7f', "при"));
  ASSERT_EQ(sent(), "\x7f\x7f\x7f");
  shows("\x1b[1;1H and more   \x1b[1;1H");
  EXPECT_EQ(sent(), "при");
}

TEST_F(RetypingTest, WhereTheCursorOnlyMovesNothingIsTyped) {
  shows("a ghb");
  ASSERT_TRUE(retyping_->begin(U"ghb", '\x7f', "при"));
  ASSERT_EQ(sent(), "\x7f\x7f\x7f");
  shows("\x1b[1;3H");
  EXPECT_EQ(sent(), "");
  retyping_->stopWaiting();
  EXPECT_FALSE(retyping_->isUnderWay());
  EXPECT_EQ(sent(), "");
}

TEST_F(RetypingTest, WhatWasErasedOfAWordThatStaysComesBack) {
  shows("a ghb");
  ASSERT_TRUE(retyping_->begin(U"ghb", '\x7f', "при"));
  ASSERT_EQ(sent(), "\x7f\x7f\x7f");
  shows("\b \b");
  retyping_->stopWaiting();
  EXPECT_EQ(sent(), "b");
}

TEST_F(RetypingTest, TheTextMayComeLateButNotBehindAnotherKey) {
  shows("a ghb");
  ASSERT_TRUE(retyping_->begin(U"ghb", '\x7f', "при"));
  ASSERT_EQ(sent(), "\x7f\x7f\x7f");
  retyping_->stopWaiting();
  EXPECT_FALSE(retyping_->isUnderWay());
  shows("\x1b[1;3H\x1b[K");
  EXPECT_EQ(sent(), "при");
  shows("\x1b[1;3Hghb");
  ASSERT_TRUE(retyping_->begin(U"ghb", '\x7f', "при"));
  ASSERT_EQ(sent(), "\x7f\x7f\x7f");
  retyping_->giveUp();
  shows("\x1b[1;3H\x1b[K");
  EXPECT_EQ(sent(), "");
}

TEST_F(RetypingTest, NothingIsSentForAWordThatIsNotThere) {
  shows("a ghbx");
  EXPECT_FALSE(retyping_->begin(U"ghb", '\x7f', "при"));
  output_.feed("\x1b[?1049l");
  EXPECT_FALSE(retyping_->begin(U"x", '\x7f', "ч"));
  EXPECT_EQ(sent(), "");
}

}  // namespace
}  // namespace tessarok::terminal
