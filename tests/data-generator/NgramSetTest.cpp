#include <stdexcept>

#include "NgramSet.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

using Words = std::vector<std::string>;

Words groupsOf(std::u32string_view word, std::size_t length, NgramSet::Marks marks) {
  const Alphabet& alphabet = word.front() < 0x80 ? Alphabet::english() : Alphabet::russian();
  NgramSet set(alphabet, length, marks);
  set.add(word);
  return set.list();
}

TEST(NgramSet, CollectsEveryPairAndTripleOnce) {
  EXPECT_EQ(groupsOf(U"banana", 2, NgramSet::Marks::kNone), (Words{"an", "ba", "na"}));
  EXPECT_EQ(groupsOf(U"banana", 3, NgramSet::Marks::kNone), (Words{"ana", "ban", "nan"}));
}

TEST(NgramSet, AWordShorterThanTheGroupGivesNothing) {
  EXPECT_EQ(groupsOf(U"я", 2, NgramSet::Marks::kNone), Words{});
  EXPECT_EQ(groupsOf(U"на", 3, NgramSet::Marks::kNone), Words{});
}

TEST(NgramSet, BoundaryMarksStandAtBothEnds) {
  EXPECT_EQ(groupsOf(U"дом", 3, NgramSet::Marks::kBoundary), (Words{"^до", "дом", "ом$"}));
  EXPECT_EQ(groupsOf(U"и", 3, NgramSet::Marks::kBoundary), Words{"^и$"});
}

TEST(NgramSet, ListsInByteOrder) {
  NgramSet set(Alphabet::russian(), 2, NgramSet::Marks::kNone);
  set.add(U"ёж");
  set.add(U"яд");
  set.add(U"ад");
  EXPECT_EQ(set.list(), (Words{"ад", "яд", "ёж"}));
}

TEST(NgramSet, KeepsTheGroupsOfEveryWord) {
  NgramSet set(Alphabet::english(), 3, NgramSet::Marks::kBoundary);
  set.add(U"to");
  set.add(U"at");
  EXPECT_EQ(set.list(), (Words{"^at", "^to", "at$", "to$"}));
}

TEST(NgramSet, AForeignWordIsAMistakeOfTheCaller) {
  NgramSet set(Alphabet::english(), 2, NgramSet::Marks::kNone);
  EXPECT_THROW(set.add(U"мир"), std::invalid_argument);
  EXPECT_THROW(set.add(U"a$b"), std::invalid_argument);
}

}  // namespace
}  // namespace tessarok::makedata::test
