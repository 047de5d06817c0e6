#include <gtest/gtest.h>
#include <string>

#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/TypedLine.h"

namespace tessarok::terminal {
namespace {

class TypedLineTest : public ::testing::Test {
 protected:
  void show(std::string_view bytes) {
    output_.feed(bytes);
    line_.noteOutput();
  }
  void type(std::u32string_view characters) {
    for (const auto character : characters)
      line_.add(character);
  }

  ProgramOutput output_;
  TypedLine line_{output_.screen()};
};

TEST_F(TypedLineTest, IsShownWhenEveryCharacterStandsAtTheCursor) {
  show("$ ");
  EXPECT_TRUE(line_.isShown());
  type(U"gп");
  EXPECT_FALSE(line_.isShown());
  show("g");
  EXPECT_FALSE(line_.isShown());
  show("\xd0");
  EXPECT_FALSE(line_.isShown());
  show("\xbf");
  EXPECT_TRUE(line_.isShown());
  EXPECT_EQ(line_.lettersShown(), 2u);
}

TEST_F(TypedLineTest, ColoursSuggestionsAndRepaintingAreNoHindrance) {
  show("$ ");
  type(U"gi");
  show("\x1b[31mg\x1b[0m\x1b[90mit status\x1b[0m\x1b[9D");
  EXPECT_FALSE(line_.isShown());
  show("\r\x1b[2C\x1b[32mgi\x1b[0m");
  EXPECT_TRUE(line_.isShown());
}

TEST_F(TypedLineTest, OutputOfOthersShowsNothing) {
  show("Password: ");
  type(U"abc");
  // All the letters, and even the word, but not where it was typed.
  show("c b a\r\nabc\r\nxabc\r\n");
  EXPECT_FALSE(line_.isShown());
  EXPECT_FALSE(line_.seemsShown());
}

TEST_F(TypedLineTest, AMaskShowsNothing) {
  show("Password: ");
  type(U"*b");
  show("**");
  EXPECT_FALSE(line_.isShown());
  EXPECT_EQ(line_.lettersShown(), 0u);
}

TEST_F(TypedLineTest, WhatWasTypedAheadIsFoundWhereItAppears) {
  show("$ ");
  line_.end();
  type(U"ls");
  show("\r\nsome output\r\n$ l");
  EXPECT_FALSE(line_.seemsShown());
  show("s");
  EXPECT_FALSE(line_.isShown());
  EXPECT_TRUE(line_.seemsShown());
  line_.settle();
  EXPECT_TRUE(line_.isShown());
  // From here on the place is known.
  type(U" x");
  show(" x");
  EXPECT_TRUE(line_.isShown());
}

TEST_F(TypedLineTest, AnErasedCharacterHasToGo) {
  show("$ ");
  type(U"ab");
  line_.erase();
  show("ab");
  EXPECT_FALSE(line_.isShown());
  show("\b\x1b[K");
  EXPECT_TRUE(line_.isShown());
}

TEST_F(TypedLineTest, LongLinesGoOnInTheNextRow) {
  output_.screen().setSize(24, 10);
  show("$ ");
  type(U"abcdefghij");
  // As readline does at the edge.
  show("abcdefgh \rij");
  EXPECT_TRUE(line_.isShown());
}

TEST_F(TypedLineTest, InTheMidstOfALineTheRestMovesOn) {
  show("$ ");
  type(U"ac");
  show("ac");
  line_.breakOff();
  show("\b");
  type(U"b");
  show("\x1b[1@b");
  EXPECT_TRUE(line_.isShown());
  type(U"x");
  show("xc\b");
  EXPECT_TRUE(line_.isShown());
}

TEST_F(TypedLineTest, AProgramThatGoesOnByItselfBeginsANewLine) {
  show("y/n? ");
  type(U"y");
  show("y");
  EXPECT_EQ(line_.lettersShown(), 1u);
  show("\r\nPassword: ");
  type(U"s");
  EXPECT_EQ(line_.lettersShown(), 0u);
  EXPECT_EQ(line_.text(), U"s");
  show("\r\n");
  EXPECT_FALSE(line_.isShown());
}

}  // namespace
}  // namespace tessarok::terminal
