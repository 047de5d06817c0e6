#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"

namespace tessarok {
namespace {

using testing::FakeDesktop;
using Word = std::optional<std::string>;

class DetectorShortWordsTest : public ::testing::Test {
 protected:
  DetectorShortWordsTest() {
    desktop.addResource("dict_en", "cello\nhello\n");
    desktop.addResource("dict_ru", "мы\nпривет\nслово\nёлка\n");
  }
  FakeDesktop desktop;
};

TEST_F(DetectorShortWordsTest, WhitelistedPairsNeedNoFrequencyList) {
  EXPECT_TRUE(Detector::isShortRuCandidate("yf"));
  EXPECT_TRUE(Detector::isShortRuCandidate("Yf"));
  EXPECT_TRUE(Detector::isShortRuCandidate("YF"));
}

TEST_F(DetectorShortWordsTest, ExcludedPairsAreNoCandidates) {
  desktop.addResource("freq_short_ru", "ещ\nещё\nто\n");
  EXPECT_FALSE(Detector::isShortRuCandidate("to"));
  IgnoreList::add("yf");
  EXPECT_FALSE(Detector::isShortRuCandidate("yf"));
}

TEST_F(DetectorShortWordsTest, OnlyPairsAreCandidates) {
  desktop.addResource("freq_short_ru", "мы\nмир\n");
  EXPECT_FALSE(Detector::isShortRuCandidate("vbh"));
  EXPECT_FALSE(Detector::isShortRuCandidate("v"));
  EXPECT_FALSE(Detector::isShortRuCandidate(""));
  EXPECT_FALSE(Detector::isShortRuCandidate("v1"));
  EXPECT_FALSE(Detector::isShortRuCandidate("v-"));
  EXPECT_FALSE(Detector::isShortRuCandidate("мы"));
  EXPECT_FALSE(Detector::isShortRuCandidate("vы"));
  EXPECT_FALSE(Detector::isShortRuCandidate(",."));
}

TEST_F(DetectorShortWordsTest, APairThatGivesAFrequentWordIsACandidate) {
  desktop.addResource("freq_short_ru", "мы\nбы\n");
  EXPECT_TRUE(Detector::isShortRuCandidate("vs"));
  EXPECT_TRUE(Detector::isShortRuCandidate("VS"));
  // The comma is the key of б.
  EXPECT_TRUE(Detector::isShortRuCandidate(",s"));
  EXPECT_FALSE(Detector::isShortRuCandidate("vb"));
}

TEST_F(DetectorShortWordsTest, WithoutTheListOnlyTheWhitelistCounts) {
  EXPECT_FALSE(Detector::isShortRuCandidate("vs"));
}

TEST_F(DetectorShortWordsTest, AFrequentEnglishWordTypedInRussianIsACandidate) {
  desktop.addResource("freq_short_en", "hi\nok\n");
  EXPECT_TRUE(Detector::isShortEnCandidate("рш"));
  EXPECT_TRUE(Detector::isShortEnCandidate("Рш"));
  EXPECT_FALSE(Detector::isShortEnCandidate("рр"));
  EXPECT_FALSE(Detector::isShortEnCandidate("hi"));
  EXPECT_FALSE(Detector::isShortEnCandidate("ршш"));
  EXPECT_FALSE(Detector::isShortEnCandidate("р1"));
  EXPECT_FALSE(Detector::isShortEnCandidate("hш"));
  EXPECT_FALSE(Detector::isShortEnCandidate(""));
}

TEST_F(DetectorShortWordsTest, ARussianWordIsNoEnglishCandidate) {
  desktop.addResource("freq_short_en", "vs\nhi\n");
  EXPECT_FALSE(Detector::isShortEnCandidate("мы"));  // gives "vs"
  EXPECT_FALSE(Detector::isShortEnCandidate("МЫ"));
}

TEST_F(DetectorShortWordsTest, APairThatGivesPunctuationIsNoCandidate) {
  desktop.addResource("freq_short_en", "hi\n");
  EXPECT_FALSE(Detector::isShortEnCandidate("бр"));
  EXPECT_FALSE(Detector::isShortEnCandidate("рю"));
  EXPECT_FALSE(Detector::isShortEnCandidate("р,"));
}

TEST_F(DetectorShortWordsTest, AnExcludedCyrillicPairIsNoCandidate) {
  desktop.addResource("freq_short_en", "hi\n");
  IgnoreList::recordRejection("рш");
  EXPECT_FALSE(Detector::isShortEnCandidate("рш"));
}

TEST_F(DetectorShortWordsTest, WithoutTheListNothingIsAnEnglishCandidate) {
  EXPECT_FALSE(Detector::isShortEnCandidate("рш"));
}

TEST_F(DetectorShortWordsTest, TwoLeadingCapitalsOfAWordAreOneTooMany) {
  EXPECT_EQ(Detector::fixShiftLag("ПРивет"), "Привет");
  EXPECT_EQ(Detector::fixShiftLag("HEllo"), "Hello");
  EXPECT_EQ(Detector::fixShiftLag("ЁЛка"), "Ёлка");
}

TEST_F(DetectorShortWordsTest, PunctuationAtTheEndStays) {
  EXPECT_EQ(Detector::fixShiftLag("ПРивет,"), "Привет,");
  EXPECT_EQ(Detector::fixShiftLag("HEllo.;\""), "Hello.;\"");
}

TEST_F(DetectorShortWordsTest, OtherCapitalsMeanSomething) {
  for (const auto* word :
       {"ПРИвет", "ПРИВЕТ", "Привет", "привет", "ПрИвет", "пРивет", "", ",,", "HELLO", "hEllo"}) {
    EXPECT_EQ(Detector::fixShiftLag(word), std::nullopt) << word;
  }
}

TEST_F(DetectorShortWordsTest, ThreeLettersAreTooFew) {
  desktop.addResource("dict_ru", "при\n");
  EXPECT_EQ(Detector::fixShiftLag("ПРи"), std::nullopt);
  EXPECT_EQ(Detector::fixShiftLag("ПРи,"), std::nullopt);
}

TEST_F(DetectorShortWordsTest, AWordOutsideTheDictionaryStays) {
  desktop.addResource("dict_en", "cello\n");
  EXPECT_EQ(Detector::fixShiftLag("HEllo"), std::nullopt);
  EXPECT_EQ(Detector::fixShiftLag("ПРивед"), std::nullopt);
}

TEST_F(DetectorShortWordsTest, MixedAlphabetsStay) {
  desktop.addResource("dict_ru", "привет\n");
  EXPECT_EQ(Detector::fixShiftLag("ПРивeт"), std::nullopt);  // a Latin e
  EXPECT_EQ(Detector::fixShiftLag("ПРив1т"), std::nullopt);
  EXPECT_EQ(Detector::fixShiftLag("ПРив,т"), std::nullopt);
}

TEST_F(DetectorShortWordsTest, ExcludedWordsStay) {
  IgnoreList::add("привет");
  IgnoreList::add("hello,");
  EXPECT_EQ(Detector::fixShiftLag("ПРивет"), std::nullopt);
  EXPECT_EQ(Detector::fixShiftLag("ПРивет,"), std::nullopt);
  EXPECT_EQ(Detector::fixShiftLag("HEllo,"), std::nullopt);
  EXPECT_EQ(Detector::fixShiftLag("HEllo"), "Hello");
}

TEST_F(DetectorShortWordsTest, WithoutDictionariesNothingIsFixed) {
  desktop.addResource("dict_en", "");
  desktop.addResource("dict_ru", "");
  EXPECT_EQ(Detector::fixShiftLag("ПРивет"), Word());
  EXPECT_EQ(Detector::fixShiftLag("HEllo"), Word());
}

}  // namespace
}  // namespace tessarok
