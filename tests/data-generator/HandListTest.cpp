#include "HandList.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

using Words = std::vector<std::string>;

std::string listError(std::string_view text) {
  return inputErrorOf([&] { (void)readHandList(text, "l.txt"); });
}

TEST(HandList, SkipsCommentsAndEmptyLinesAndTrims) {
  const std::vector<Line> entries = readHandList("# names\n\n  Коля \n\t# more\nbye.\n", "l.txt");
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].text, "Коля");
  EXPECT_EQ(entries[0].number, 3U);
  EXPECT_EQ(entries[1].text, "bye.");
}

TEST(HandList, RefusesAnEntryOfSeveralWords) {
  EXPECT_EQ(listError("a\nb c\n"), "l.txt:2: an entry must not hold white space");
}

TEST(HandList, RefusesARepeatedEntryInAnyCase) {
  EXPECT_EQ(listError("ку\n\nКУ\n"), "l.txt:3: 'КУ' is already on line 1");
}

TEST(HandWords, AreLowerCase) {
  EXPECT_EQ(readHandWords("Он\nЕё\n", "l.txt", Alphabet::russian()), (Words{"он", "её"}));
}

TEST(HandWords, RefuseOtherLetters) {
  EXPECT_EQ(inputErrorOf([] { (void)readHandWords("он\nhe\n", "l.txt", Alphabet::russian()); }),
            "l.txt:2: 'he' is not a word of the russian letters");
}

TEST(HandWords, RefuseWrongLengths) {
  const auto errorOf = [](std::string_view text) {
    return inputErrorOf([text] {
      (void)readHandWords(text, "l.txt", Alphabet::english(), {2, 3});
    });
  };
  EXPECT_EQ(errorOf("to\nthe\n"), "no error");
  EXPECT_EQ(errorOf("to\nthem\n"), "l.txt:2: 'them' must have 2 to 3 letters");
  EXPECT_EQ(errorOf("a\n"), "l.txt:1: 'a' must have 2 to 3 letters");
}

}  // namespace
}  // namespace tessarok::makedata::test
