#include <gtest/gtest.h>

#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/Screen.h"

namespace tessarok::terminal {
namespace {

/// A program that fills ten rows of twenty columns.
class FilledScreen : public ::testing::Test {
 protected:
  FilledScreen() {
    output_.screen().setSize(10, 20);
    output_.feed("\x1b[?1049h");
  }
  std::u32string wordAfter(std::string_view bytes) {
    output_.feed(bytes);
    return output_.screen().wordBeforeCursor(64);
  }

  ProgramOutput output_;
};

TEST_F(FilledScreen, TellsTheWordBeforeTheCursorWhateverCameBefore) {
  EXPECT_EQ(wordAfter("\x1b[3;2Hone ghbdtn"), U"ghbdtn");
  EXPECT_EQ(wordAfter(" "), U"");
  EXPECT_EQ(wordAfter("\x1b[3D"), U"ghbd");
  EXPECT_EQ(wordAfter("\x1b[9;1Hелse\x1b[3;5H"), U"one");
  EXPECT_EQ(wordAfter("\x1b[3;1H"), U"");
}

TEST_F(FilledScreen, OnlyAFilledOneIsKnown) {
  ASSERT_EQ(wordAfter("word"), U"word");
  EXPECT_EQ(wordAfter("\x1b[?1049l"), U"");
  EXPECT_EQ(wordAfter("word"), U"");
  EXPECT_EQ(wordAfter("\x1b[?1049h"), U"");
}

TEST_F(FilledScreen, WideCharactersTakeTwoColumns) {
  EXPECT_EQ(wordAfter("\x1b[1;1H漢字 ghbdtn"), U"ghbdtn");
  EXPECT_EQ(output_.screen().cursor(), 11);
  // They do not fit into the last column.
  EXPECT_EQ(wordAfter("\x1b[2;20H漢"), U"");
  EXPECT_EQ(output_.screen().cursor(), 2 * 20 + 2);
  // Half of one is none.
  EXPECT_EQ(wordAfter("\x1b[1;2Ha"), U"a");
  output_.feed("\r");
  EXPECT_EQ(output_.screen().restOfRow().substr(0, 3), U" a字");
}

TEST_F(FilledScreen, DrawnLinesAndCharactersWithMarksAreNoText) {
  EXPECT_EQ(wordAfter("\x1b[1;1H\x1b(0x\x1b(Bghbdtn"), U"ghbdtn");
  EXPECT_EQ(wordAfter("\x1b[2;1H\x1b)0\x0ex\x0fvbh"), U"vbh");
  EXPECT_EQ(wordAfter("\x1b[3;1Hи\u0306x"), U"x");
}

TEST_F(FilledScreen, ScrollsBetweenItsMargins) {
  EXPECT_EQ(wordAfter("\x1b[1;1Htop\x1b[2;9r\x1b[9;1Hlast\nnext\x1b[8;5H"), U"last");
  EXPECT_EQ(wordAfter("\x1b[1;4H"), U"top");
}

TEST_F(FilledScreen, AnotherSizeForgetsWhatStoodThere) {
  ASSERT_EQ(wordAfter("\x1b[10;15Hword"), U"word");
  output_.screen().setSize(5, 10);
  EXPECT_EQ(output_.screen().wordBeforeCursor(64), U"");
  EXPECT_LT(output_.screen().cursor(), 5 * 10);
  EXPECT_EQ(wordAfter("\x1b[9;1Hagain"), U"again");
  EXPECT_EQ(output_.screen().cursor(), 4 * 10 + 5);
}

TEST_F(FilledScreen, WithoutWrappingTheLastColumnIsWrittenAgain) {
  EXPECT_EQ(wordAfter("\x1b[?7l\x1b[1;19Habcd"), U"ad");
  EXPECT_EQ(output_.screen().cursor(), 20);
}

}  // namespace
}  // namespace tessarok::terminal
