#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "words/WordLines.h"

namespace tessarok {
namespace {

using Lines = std::vector<std::pair<std::size_t, std::string>>;

Lines linesOf(std::string_view text, WordLines::Split split = WordLines::Split::atEveryLf) {
  Lines all;
  WordLines lines(text, split);
  while (lines.next())
    all.emplace_back(lines.number(), lines.line());
  return all;
}

TEST(WordLines, TrimsLinesAndCountsTheEmptyOnes) {
  EXPECT_EQ(linesOf("one\n\n  two\t\n \nthree"), (Lines{{1, "one"}, {3, "two"}, {5, "three"}}));
}

TEST(WordLines, ALineBreakAtTheEndAddsNoLine) {
  EXPECT_EQ(linesOf("one\n"), (Lines{{1, "one"}}));
  EXPECT_EQ(linesOf(""), Lines{});
  EXPECT_EQ(linesOf("\n \n"), Lines{});
}

TEST(WordLines, AByteOrderMarkIsNoPartOfTheFirstLine) {
  EXPECT_EQ(linesOf("\uFEFFone\ntwo\n"), (Lines{{1, "one"}, {2, "two"}}));
  EXPECT_EQ(linesOf("\uFEFF"), Lines{});
  EXPECT_EQ(linesOf("\uFEFF\r\none", WordLines::Split::atLoneLf), (Lines{{1, "one"}}));
  // Elsewhere it is a character like any other.
  EXPECT_EQ(linesOf("one\n\uFEFFtwo"), (Lines{{1, "one"}, {2, "\uFEFFtwo"}}));
}

TEST(WordLines, ACrBeforeTheLfIsTrimmedAway) {
  EXPECT_EQ(linesOf("one\r\ntwo\r\n"), (Lines{{1, "one"}, {2, "two"}}));
}

TEST(WordLines, WithCharactersInMindACrLfPairBreaksNoLine) {
  const auto split = WordLines::Split::atLoneLf;
  EXPECT_EQ(linesOf("one\r\ntwo\r\n", split), (Lines{{1, "one\r\ntwo"}}));
  EXPECT_EQ(linesOf("one\ntwo\r\nthree\nfour", split),
            (Lines{{1, "one"}, {2, "two\r\nthree"}, {3, "four"}}));
  EXPECT_EQ(linesOf("\none", split), (Lines{{2, "one"}}));
}

}  // namespace
}  // namespace tessarok
