#include <gtest/gtest.h>

#include "desktops/terminal/PasteBySize.h"

namespace tessarok::terminal {
namespace {

class PastesBySize : public ::testing::Test {
 protected:
  /// Whether these bytes, which come `seconds` after the ones before, are taken for pasted. The
  /// program takes them at once.
  bool comes(std::size_t count, double seconds) {
    now_ += seconds;
    const bool isPaste = paste_.read(count, wantsBrackets_, now_);
    paste_.noteServed(now_);
    return isPaste;
  }

  PasteBySize paste_;
  bool wantsBrackets_ = false;
  double now_ = 100;
};

TEST_F(PastesBySize, WhatAPersonTypesIsNotPasted) {
  for (const std::size_t count : {1u, 2u, 20u, 63u})
    EXPECT_FALSE(comes(count, 0.01)) << count;
}

TEST_F(PastesBySize, SixtyFourBytesArePastedWhereNoBracketsSaySo) {
  EXPECT_TRUE(comes(64, 1));
  wantsBrackets_ = true;
  EXPECT_FALSE(comes(255, 1));
  EXPECT_TRUE(comes(256, 1));
}

TEST_F(PastesBySize, KeysThatHadToWaitCameTogether) {
  paste_.noteWait(now_);
  EXPECT_FALSE(comes(200, 4.9));
  EXPECT_TRUE(comes(200, 0.2));
}

TEST_F(PastesBySize, APasteComesInParts) {
  EXPECT_TRUE(comes(4096, 1));
  for (int i = 0; i < 20; ++i)
    EXPECT_TRUE(comes(33, 0.09));
  EXPECT_TRUE(comes(3, 0.09));
  EXPECT_FALSE(comes(3, 0.02));
}

TEST_F(PastesBySize, OnlyTheBeginningOfAPasteIsWorthAWait) {
  EXPECT_FALSE(paste_.mayBegin(32, now_));
  EXPECT_TRUE(paste_.mayBegin(33, now_));
  EXPECT_TRUE(paste_.mayBegin(255, now_));
  EXPECT_FALSE(paste_.mayBegin(256, now_));
  EXPECT_TRUE(comes(300, 1));
  EXPECT_FALSE(paste_.mayBegin(33, now_ + 0.09));
  EXPECT_TRUE(paste_.mayBegin(33, now_ + 0.11));
}

TEST_F(PastesBySize, AProgramThatIsSlowToTakeItEndsNoPaste) {
  EXPECT_TRUE(paste_.read(4096, wantsBrackets_, now_));
  now_ += 30;
  paste_.noteServed(now_);
  EXPECT_TRUE(comes(40, 0.05));
}

TEST_F(PastesBySize, KeysBehindAPasteAreKeysHoweverCloselyTheyFollowOneAnother) {
  EXPECT_TRUE(comes(300, 1));
  // Held down, a key comes thirty times a second.
  for (int i = 0; i < 4; ++i)
    comes(1, 0.033);
  for (int i = 0; i < 10; ++i)
    EXPECT_FALSE(comes(1, 0.033));
}

}  // namespace
}  // namespace tessarok::terminal
