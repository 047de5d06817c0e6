#include <algorithm>
#include <gtest/gtest.h>

#include "KeyNgrams.h"

namespace tessarok::makedata::test {
namespace {

using Groups = std::vector<std::string>;

Groups sorted(Groups groups) {
  std::ranges::sort(groups);
  return groups;
}

TEST(KeyNgrams, ListsTheGroupsOfItsWords) {
  KeyNgrams ngrams;
  ngrams.add("cat", 1);
  EXPECT_EQ(sorted(ngrams.pairs()), (Groups{"at", "ca"}));
  EXPECT_EQ(ngrams.triples(), (Groups{"cat"}));
  EXPECT_EQ(sorted(ngrams.markedTriples()), (Groups{"^ca", "at$", "cat"}));
}

TEST(KeyNgrams, AddsTheWeightsOfTheWordsThatShareAGroup) {
  KeyNgrams ngrams;
  ngrams.setFloors({5, 5});
  ngrams.add("cat", 3);
  ngrams.add("hat", 3);
  EXPECT_EQ(ngrams.pairs(), (Groups{"at"}));
  EXPECT_EQ(ngrams.markedTriples(), (Groups{"at$"}));
}

TEST(KeyNgrams, KnowsATripleThatNoWordHas) {
  KeyNgrams ngrams;
  ngrams.add("cat", 1);
  EXPECT_FALSE(ngrams.hasImpossible("cat"));
  EXPECT_TRUE(ngrams.hasImpossible("cats"));
  EXPECT_TRUE(ngrams.hasImpossible("at"));
  EXPECT_TRUE(ngrams.hasImpossible("cat."));
}

TEST(KeyNgrams, BlendsTheSharesOfPairsAndTriples) {
  KeyNgrams ngrams;
  ngrams.add("cat", 1);
  EXPECT_DOUBLE_EQ(ngrams.plausibility("cat"), 1);
  EXPECT_DOUBLE_EQ(ngrams.plausibility("cats"), 0.7 * 2 / 3 + 0.3 / 2);
  EXPECT_DOUBLE_EQ(ngrams.plausibility("xyz"), 0);
}

}  // namespace
}  // namespace tessarok::makedata::test
