#include "FrequencyTable.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

FrequencyTable parse(std::string_view text) {
  return FrequencyTable::parse(text, "t.tsv", Alphabet::english());
}

std::string errorOf(std::string_view text) {
  return inputErrorOf([text] { (void)parse(text); });
}

TEST(FrequencyTable, TakesTheLargerOfCountAndPlace) {
  const auto table = parse(
      "# head\nthe\t3\t1\t0\t0\ncat\t1\t0\t1\t0\nrare\t0\t10000\t0\t0\nlist\t0\t0\t3\t0\n"
      "hey\t0\t0\t0\t9\n");
  EXPECT_DOUBLE_EQ(table.perMillion("the"), 750'000);
  EXPECT_DOUBLE_EQ(table.perMillion("cat"), 250'000);
  EXPECT_DOUBLE_EQ(table.perMillion("rare"), 5);
  EXPECT_DOUBLE_EQ(table.perMillion("list"), 375'000);
  EXPECT_DOUBLE_EQ(table.entries().at("hey").typedPerMillion, 1'000'000);
  EXPECT_DOUBLE_EQ(table.entries().at("list").typedPerMillion, 0);
  EXPECT_DOUBLE_EQ(table.perMillion("unknown"), 0);
}

TEST(FrequencyTable, NamesTheLineThatItCannotRead) {
  EXPECT_EQ(errorOf("the\t3\t1\t0\t0\ncat\t1\t0\t0\n"), "t.tsv:2: not a word and four numbers");
  EXPECT_EQ(errorOf("the\tmany\t1\t0\t0\n"), "t.tsv:1: 'many' is not a number");
  EXPECT_EQ(errorOf("кот\t3\t1\t0\t0\n"), "t.tsv:1: 'кот' is not a word of the english letters");
}

}  // namespace
}  // namespace tessarok::makedata::test
