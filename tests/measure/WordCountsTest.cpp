#include <gtest/gtest.h>

#include "WordCounts.h"

namespace tessarok::frequencies::test {
namespace {

TEST(WordCounts, CountsWordsInLowerCase) {
  WordCounts counts;
  counts.add("Кот, кот - \"КОТ\"!", Language::russian);
  counts.add("какой-то кот", Language::russian);
  EXPECT_EQ(counts.table("# head\n", 1),
            "# head\nкакой\t1\t0\t0\t0\nкот\t4\t0\t0\t0\nто\t1\t0\t0\t0\n");
  EXPECT_EQ(counts.total(), 6U);
}

TEST(WordCounts, LeavesOutWhatIsNoPlainWord) {
  WordCounts counts;
  counts.add("don't see example.org or CMake 2x", Language::english);
  EXPECT_EQ(counts.table("", 1), "or\t1\t0\t0\t0\nsee\t1\t0\t0\t0\n");
}

TEST(WordCounts, LeavesRareWordsOutButNotRankedOnes) {
  WordCounts counts;
  counts.add("one two two", Language::english);
  counts.rank("three", 7);
  counts.rank("three", 9);
  EXPECT_EQ(counts.table("", 2), "three\t0\t7\t0\t0\ntwo\t2\t0\t0\t0\n");
}

TEST(WordCounts, TakesTheWordsOfPrograms) {
  WordCounts counts;
  counts.addCode("if [ -f \"$dir/my_file\" ]; then CMake");
  EXPECT_EQ(
      counts.table("", 1),
      "dir\t1\t0\t0\t0\nfile\t1\t0\t0\t0\nif\t1\t0\t0\t0\nmy\t1\t0\t0\t0\nthen\t1\t0\t0\t0\n");
}

TEST(WordCounts, TakesTheWordsOfADictionaryApart) {
  WordCounts counts;
  counts.addListed("pond _n. пруд; пруд-ок, разг. кот", Language::russian);
  EXPECT_EQ(counts.table("", 1), "пруд\t0\t0\t2\t0\nразг\t0\t0\t1\t0\n");
  EXPECT_EQ(counts.total(), 0U);
}

TEST(WordCounts, TakesWhatWasCountedInSpeech) {
  WordCounts counts;
  counts.add("кот", Language::russian);
  for (const char* line : {"Кот 5", "ага 7", "ага 1", ";;; from films", "и 3x", "the 9", ""})
    counts.addSpoken(line, Language::russian);
  EXPECT_EQ(counts.table("", 2), "ага\t0\t0\t0\t8\nкот\t1\t0\t0\t5\n");
  EXPECT_EQ(counts.total(), 1U);
}

}  // namespace
}  // namespace tessarok::frequencies::test
