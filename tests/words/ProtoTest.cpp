#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "words/Proto.h"

namespace tessarok {
namespace {

using testing::FakeDesktop;

constexpr Proto::Kind kEnglishPairs{"", Language::english, 2, false};
constexpr Proto::Kind kEnglishTriples{"", Language::english, 3, false};
constexpr Proto::Kind kEnglishMarked{"", Language::english, 3, true};
constexpr Proto::Kind kRussianPairs{"", Language::russian, 2, false};
constexpr Proto::Kind kRussianMarked{"", Language::russian, 3, true};
/// Not one of the six files, but the rules hold for any length.
constexpr Proto::Kind kMarkedPairs{"", Language::english, 2, true};

bool isAccepted(std::string_view text, const Proto::Kind& kind) {
  const auto parsed = Proto::parse(text, kind);
  EXPECT_EQ(parsed.fault.has_value(), parsed.set.empty()) << text;
  return !parsed.set.empty();
}

TEST(Proto, MarksStandAtTheEndsOfBoundaryTriplesOnly) {
  EXPECT_TRUE(isAccepted("^qu\nly$\n^a$\nabc\n", kEnglishMarked));
  EXPECT_TRUE(isAccepted("^пр\nет$\n^и$\nёж$\n", kRussianMarked));
  for (const std::string_view bad : {"q^u", "qu^", "$qu", "q$u", "^^a", "a$$"}) {
    EXPECT_FALSE(isAccepted(bad, kEnglishMarked)) << bad;
  }
  EXPECT_FALSE(isAccepted("^q$", kMarkedPairs));
  EXPECT_FALSE(isAccepted("^qu", kEnglishTriples));
}

TEST(Proto, OneBadLineRejectsTheWholeFile) {
  EXPECT_TRUE(isAccepted("ab\nbc\n", kEnglishPairs));
  for (const std::string_view bad :
       {"ab\nABC\n", "ab\nAB\n", "ab\na\n", "ab\nabc\n", "ab\na1\n", "ab\nна\n", "ab\n#\n"}) {
    EXPECT_FALSE(isAccepted(bad, kEnglishPairs)) << bad;
  }
  EXPECT_FALSE(isAccepted("на\nНА\n", kRussianPairs));
  EXPECT_EQ(Proto::parse("ab\n\nABC", kEnglishPairs).fault->line, 3u);
}

TEST(Proto, BlankLinesRepetitionsAndSpacesAtTheEndsAreHarmless) {
  const auto parsed = Proto::parse("\n ab\t\n\nbc\nab", kEnglishPairs);
  EXPECT_EQ(parsed.set.size(), 2u);
}

TEST(Proto, CrLfLineEndsAreRejected) {
  EXPECT_FALSE(isAccepted("ab\r\nbc\r\n", kEnglishPairs));
  EXPECT_EQ(Proto::parse("ab\r\nbc\r\n", kEnglishPairs).fault->reason, kCrLfReason);
}

TEST(Proto, AFileWithoutLinesIsEmpty) {
  EXPECT_FALSE(isAccepted("", kEnglishPairs));
  EXPECT_FALSE(isAccepted("\n\n", kEnglishPairs));
}

TEST(Proto, NothingIsKnownBeforeLoading) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  EXPECT_FALSE(Proto::isAvailable(Language::russian));
  EXPECT_FALSE(Proto::isAvailable(Language::english));
  EXPECT_FALSE(Proto::hasImpossible("ъъъ", Language::russian));
}

TEST(Proto, ALanguageNeedsAllThreeOfItsSets) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  desktop.addResource("proto_ru2", "НА\n");
  Proto::load();
  EXPECT_TRUE(Proto::pairs(Language::russian).empty());
  EXPECT_FALSE(Proto::isAvailable(Language::russian));
  EXPECT_TRUE(Proto::isAvailable(Language::english));
}

TEST(Proto, WithoutTriplesALanguageIsNotAvailable) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  desktop.addResource("proto_ru3", "");
  desktop.addResource("proto_en3b", "");
  Proto::load();
  EXPECT_FALSE(Proto::pairs(Language::russian).empty());
  EXPECT_FALSE(Proto::isAvailable(Language::russian));
  EXPECT_FALSE(Proto::triples(Language::english).empty());
  EXPECT_FALSE(Proto::isAvailable(Language::english));
}

TEST(Proto, AFileThatCannotBeReadIsEmpty) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  desktop.bundle().resources["proto_ru2.txt"] = desktop.home();  // a folder
  Proto::load();
  EXPECT_TRUE(Proto::pairs(Language::russian).empty());
  EXPECT_FALSE(Proto::triples(Language::russian).empty());
}

TEST(Proto, AFileThatIsNotUtf8IsEmpty) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  desktop.addResource("proto_ru2", "на\n\xff\n");
  Proto::load();
  EXPECT_TRUE(Proto::pairs(Language::russian).empty());
}

TEST(Proto, LoadingTwiceReadsTheFilesOnce) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  Proto::load();
  Proto::load();
  for (const auto& kind : Proto::kKinds) {
    EXPECT_EQ(desktop.files().reads[std::string(kind.resource) + ".txt"], 1) << kind.resource;
  }
}

TEST(Proto, ALoadWithoutFilesIsNotRepeated) {
  FakeDesktop desktop;
  Proto::load();
  desktop.addAllTestData();
  Proto::load();
  EXPECT_FALSE(Proto::isAvailable(Language::english));
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(Proto, AWordTooShortToJudgeIsFullyPlausible) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  Proto::load();
  EXPECT_DOUBLE_EQ(Proto::plausibility("q", Language::english), 1.0);
  EXPECT_DOUBLE_EQ(Proto::plausibility("", Language::english), 1.0);
}

TEST(Proto, AnUnknownPairCountsNothing) {
  FakeDesktop desktop;
  desktop.addResource("proto_en2", "ab\n");
  desktop.addResource("proto_en3", "abc\n");
  desktop.addResource("proto_en3b", "abc\n");
  Proto::load();
  // The pair is unknown and there is no triple to judge.
  EXPECT_DOUBLE_EQ(Proto::plausibility("zz", Language::english), 0.3);
  EXPECT_DOUBLE_EQ(Proto::plausibility("ab", Language::english), 1.0);
  EXPECT_DOUBLE_EQ(Proto::plausibility("zzz", Language::english), 0.0);
}

TEST(Proto, PairsWeighSevenTenthsAndTriplesThree) {
  FakeDesktop desktop;
  desktop.addResource("proto_en2", "ab\nbc\ncd\n");
  desktop.addResource("proto_en3", "abc\n");
  desktop.addResource("proto_en3b", "abc\n");
  Proto::load();
  // All of ab, bc, cd are known, and abc of abc, bcd.
  EXPECT_DOUBLE_EQ(Proto::plausibility("abcd", Language::english), 0.7 + 0.15);
  // ab of ab, bz, and none of abz.
  EXPECT_DOUBLE_EQ(Proto::plausibility("abz", Language::english), 0.35);
  // A digit is in no n-gram.
  EXPECT_DOUBLE_EQ(Proto::plausibility("ab1", Language::english), 0.35);
}

TEST(Proto, TripleOutsideTheListOfPossibleOnesIsImpossible) {
  FakeDesktop desktop;
  desktop.addResource("proto_ru3b", "^да\nда$\n^я$\n");
  Proto::load();
  EXPECT_FALSE(Proto::hasImpossible("да", Language::russian));
  EXPECT_FALSE(Proto::hasImpossible("я", Language::russian));
  EXPECT_TRUE(Proto::hasImpossible("а", Language::russian));
  EXPECT_TRUE(Proto::hasImpossible("дада", Language::russian));
  EXPECT_TRUE(Proto::hasImpossible("да1", Language::russian));
  // The start of the word is possible, its end is not.
  EXPECT_TRUE(Proto::hasImpossible("дар", Language::russian));
}

TEST(Proto, TheEmptyWordIsNotImpossible) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  Proto::load();
  EXPECT_FALSE(Proto::hasImpossible("", Language::russian));
  EXPECT_FALSE(Proto::hasImpossible("", Language::english));
}

TEST(Proto, WithoutBoundaryTriplesNothingIsImpossible) {
  FakeDesktop desktop;
  desktop.addAllTestData();
  desktop.addResource("proto_en3b", "");
  Proto::load();
  EXPECT_FALSE(Proto::hasImpossible("qqqzzz", Language::english));
  EXPECT_TRUE(Proto::hasImpossible("ъъъ", Language::russian));
}

}  // namespace
}  // namespace tessarok
