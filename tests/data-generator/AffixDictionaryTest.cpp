#include "AffixDictionary.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

using Words = std::vector<std::string>;

Words formsOf(std::string_view dictionary) {
  const AffixTable table = AffixTable::parse("SFX S Y 1\nSFX S 0 s .\n", "x.aff");
  Words forms;
  expandHunspell(dictionary, table, "x.dic", [&forms](const std::vector<std::u32string>& ofEntry) {
    for (const auto& form : ofEntry)
      forms.push_back(encodeUtf8(form));
  });
  return forms;
}

std::string expansionErrorOf(std::string_view dictionary) {
  return inputErrorOf([&] { (void)formsOf(dictionary); });
}

TEST(AffixDictionary, ExpandsEveryEntryAfterTheCount) {
  EXPECT_EQ(formsOf("2\ncat/S\nsheep\n"), (Words{"cat", "cats", "sheep"}));
}

TEST(AffixDictionary, LeavesNotesAndEmptyLinesOut) {
  EXPECT_EQ(formsOf("2\r\ncat/S\tpo:noun\r\n\r\nsheep\tst:sheep\r\n"),
            (Words{"cat", "cats", "sheep"}));
}

TEST(AffixDictionary, RefusesAFileWithoutACount) {
  EXPECT_EQ(expansionErrorOf("cat/S\n"), "x.dic:1: the first line must be the number of entries");
  EXPECT_EQ(expansionErrorOf(""), "x.dic:1: the first line must be the number of entries");
}

TEST(AffixDictionary, RefusesAnUnknownFlag) {
  EXPECT_EQ(expansionErrorOf("2\nsheep\ncat/SQ\n"), "x.dic:3: no affix class for the flag 'Q'");
}

TEST(AffixDictionary, RefusesAnEntryWithoutAWord) {
  EXPECT_EQ(expansionErrorOf("1\n/S\n"), "x.dic:2: an entry without a word");
}

}  // namespace
}  // namespace tessarok::makedata::test
