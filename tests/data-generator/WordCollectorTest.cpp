#include "ByteSort.h"
#include "TestSupport.h"
#include "WordCollector.h"

namespace tessarok::makedata::test {
namespace {

using Words = std::vector<std::string>;

TEST(ByteOrder, PutsYoAfterYaAndAPrefixBeforeTheLongerWord) {
  Words words{"ёж", "яма", "ежи", "еж", "яма"};
  sortByBytes(words);
  EXPECT_EQ(words, (Words{"еж", "ежи", "яма", "ёж"}));
}

TEST(ByteOrder, JoinsWithALineEndAfterEveryWord) {
  EXPECT_EQ(joinLines({"a", "ab"}), "a\nab\n");
  EXPECT_EQ(joinLines({}), "");
}

TEST(WordCollector, LowersCaseSortsAndDropsDuplicates) {
  WordCollector words(Alphabet::english());
  EXPECT_TRUE(words.add(U"London"));
  EXPECT_TRUE(words.add(U"an"));
  EXPECT_TRUE(words.add(U"LONDON"));
  EXPECT_EQ(words.take(), (Words{"an", "london"}));
}

TEST(WordCollector, RefusesWhatTheAlphabetDoesNotSpell) {
  WordCollector words(Alphabet::english());
  EXPECT_FALSE(words.add(U"don't"));
  EXPECT_FALSE(words.add(U"q"));
  EXPECT_EQ(words.take(), Words{});
}

TEST(WordCollector, AddsTheSpellingWithoutYo) {
  WordCollector words(Alphabet::russian());
  words.add(U"Ещё");
  EXPECT_EQ(words.take(), (Words{"еще", "ещё"}));
}

TEST(WordCollector, DropsWhateverTheOrder) {
  WordCollector words(Alphabet::russian());
  words.add(U"еру");
  words.drop("еру");
  words.drop("ша");
  words.add(U"Ша");
  words.add(U"шар");
  EXPECT_EQ(words.take(), Words{"шар"});
}

TEST(WordCollector, IsEmptyAfterTake) {
  WordCollector words(Alphabet::english());
  words.add(U"an");
  EXPECT_EQ(words.take(), Words{"an"});
  EXPECT_EQ(words.take(), Words{});
}

}  // namespace
}  // namespace tessarok::makedata::test
