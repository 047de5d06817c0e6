#include "InputText.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

TEST(Text, SplitsLinesAndCountsThemFromOne) {
  const std::vector<Line> lines = splitLines("a\r\n\nb");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].text, "a");
  EXPECT_EQ(lines[1].text, "");
  EXPECT_EQ(lines[2].text, "b");
  EXPECT_EQ(lines[2].number, 3U);
  EXPECT_EQ(splitLines("a\n").size(), 1U) << "a line end does not start another line";
}

TEST(Text, SplitsFieldsAtBlanksAndTabs) {
  EXPECT_EQ(splitFields(" SFX\tA  0 "), (std::vector<std::string_view>{"SFX", "A", "0"}));
  EXPECT_TRUE(splitFields(" \t").empty());
}

TEST(Text, ConvertsTheCharsetsOfTheWordLists) {
  EXPECT_EQ(toUtf8("\xC5\xD6\xC9\xCB \xA3\xD6", "KOI8-R", "f"), "ежик ёж");
  EXPECT_EQ(toUtf8("caf\xE9", "ISO-8859-1", "f"), "café");
}

TEST(Text, NamesTheLineOfABadByte) {
  EXPECT_EQ(inputErrorOf([] { (void)toUtf8("a\nb\xFF\n", "UTF-8", "f"); }),
            "f:2: not valid UTF-8 text");
  EXPECT_EQ(inputErrorOf([] { (void)toUtf8("a\n\n\xD0", "UTF-8", "f"); }),
            "f:3: not valid UTF-8 text")
      << "a letter cut off at the end";
}

TEST(Text, ConvertsTextLongerThanOneChunk) {
  const std::string letters(200000, '\xE9');
  EXPECT_EQ(toUtf8(letters, "ISO-8859-1", "f").size(), 400000U);
}

TEST(Text, LowersCaseInBothAlphabets) {
  EXPECT_EQ(lowerCase(U"ЁЖИК Hello"), U"ёжик hello");
}

}  // namespace
}  // namespace tessarok::makedata::test
