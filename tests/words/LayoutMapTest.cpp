#include <gtest/gtest.h>

#include "words/LayoutMap.h"

namespace tessarok {
namespace {

// The same keys in both layouts, plain and with Shift.
constexpr std::u32string_view kEnglishKeys =
    U"`qwertyuiop[]asdfghjkl;'zxcvbnm,./~QWERTYUIOP{}ASDFGHJKL:\"ZXCVBNM<>?";
constexpr std::u32string_view kRussianKeys =
    U"ёйцукенгшщзхъфывапролджэячсмитьбю.ЁЙЦУКЕНГШЩЗХЪФЫВАПРОЛДЖЭЯЧСМИТЬБЮ,";

TEST(LayoutMap, ConvertsAWordTypedOnTheOtherLayout) {
  EXPECT_EQ(LayoutMap::convert("ghbdtn", Language::english), "привет");
  EXPECT_EQ(LayoutMap::convert("руддщ", Language::russian), "hello");
}

TEST(LayoutMap, PairsAllKeysOfTheStandardLayouts) {
  ASSERT_EQ(kEnglishKeys.size(), 68u);
  ASSERT_EQ(kRussianKeys.size(), 68u);
  EXPECT_EQ(LayoutMap::enToRu().size(), 68u);
  EXPECT_EQ(LayoutMap::ruToEn().size(), 68u);
  for (std::size_t i = 0; i < kEnglishKeys.size(); ++i) {
    EXPECT_EQ(LayoutMap::enToRu().at(kEnglishKeys[i]), kRussianKeys[i]) << i;
    EXPECT_EQ(LayoutMap::ruToEn().at(kRussianKeys[i]), kEnglishKeys[i]) << i;
  }
}

TEST(LayoutMap, CaseFollowsTheKey) {
  EXPECT_EQ(LayoutMap::convert("Ghbdtn", Language::english), "Привет");
  EXPECT_EQ(LayoutMap::convert("{", Language::english), "Х");
  EXPECT_EQ(LayoutMap::convert("~", Language::english), "Ё");
}

TEST(LayoutMap, ConvertsPunctuationThatSharesAKeyAndKeepsSpaces) {
  EXPECT_EQ(LayoutMap::convert("руддщ, мир", Language::russian), "hello? vbh");
  EXPECT_EQ(LayoutMap::convert(".", Language::russian), "/");
  EXPECT_EQ(LayoutMap::convert("/", Language::english), ".");
}

TEST(LayoutMap, LeavesDigitsSpacesAndHyphensAlone) {
  for (const auto from : {Language::english, Language::russian}) {
    EXPECT_EQ(LayoutMap::convert("10 - 2", from), "10 - 2");
  }
}

TEST(LayoutMap, LeavesLettersOfTheOtherSideAndOfNoLayoutAlone) {
  EXPECT_EQ(LayoutMap::convert("привет", Language::english), "привет");
  EXPECT_EQ(LayoutMap::convert("hello", Language::russian), "hello");
  EXPECT_EQ(LayoutMap::convert("éї", Language::english), "éї");
}

TEST(LayoutMap, NeverSplitsACharacterOfSeveralScalars) {
  // "a" with a combining acute is one Character, which no key types.
  EXPECT_EQ(LayoutMap::convert("a\u0301b", Language::english), "a\u0301и");
  EXPECT_EQ(LayoutMap::convert("👩‍👧q", Language::english), "👩‍👧й");
  ScratchText scratch;
  auto out = scratch.string();
  LayoutMap::appendConverted("a\u0301b", Language::english, out);
  EXPECT_EQ(std::string_view(out), "a\u0301и");
}

TEST(LayoutMap, LetterKeysAreExactlyTheFourteenPunctuationKeysWithRussianLetters) {
  const LayoutMap::Set expected = {U'`', U'[', U']', U';', U'\'', U',', U'.',
                                   U'~', U'{', U'}', U':', U'"',  U'<', U'>'};
  EXPECT_EQ(LayoutMap::russianLetterKeys(), expected);
  EXPECT_TRUE(LayoutMap::isRussianLetterKey(","));
  EXPECT_FALSE(LayoutMap::isRussianLetterKey("/"));
  EXPECT_FALSE(LayoutMap::isRussianLetterKey("?"));
  EXPECT_FALSE(LayoutMap::isRussianLetterKey(""));
  EXPECT_FALSE(LayoutMap::isRussianLetterKey("q"));
}

TEST(LayoutMap, AlphabetsAreComplete) {
  EXPECT_EQ(LayoutMap::englishLetters().size(), 52u);
  EXPECT_EQ(LayoutMap::russianLetters().size(), 66u);
  EXPECT_TRUE(LayoutMap::russianLetters().contains(U'ё'));
  EXPECT_TRUE(LayoutMap::russianLetters().contains(U'Ё'));
  EXPECT_TRUE(LayoutMap::isAvailable());
}

TEST(LayoutMap, AMapWithoutOneLetterLeavesNoConversionAtAll) {
  auto enToRu = LayoutMap::enToRu();
  auto ruToEn = LayoutMap::ruToEn();
  enToRu.erase(U'~');
  ruToEn.erase(U'Ё');
  EXPECT_FALSE(LayoutMap::install(enToRu, ruToEn));
  EXPECT_FALSE(LayoutMap::isAvailable());
  EXPECT_TRUE(LayoutMap::enToRu().empty());
  EXPECT_TRUE(LayoutMap::ruToEn().empty());
  EXPECT_TRUE(LayoutMap::russianLetterKeys().empty());
  EXPECT_EQ(LayoutMap::convert("ghbdtn", Language::english), "ghbdtn");
  EXPECT_EQ(LayoutMap::convert("руддщ", Language::russian), "руддщ");
}

TEST(LayoutMap, EachOfTheFourHalvesOfCompletenessIsNeeded) {
  const auto enToRu = LayoutMap::enToRu();
  const auto ruToEn = LayoutMap::ruToEn();
  auto missingKey = enToRu;
  missingKey.erase(U'q');
  auto missingValue = enToRu;
  missingValue[U'q'] = U'1';
  auto missingRussianKey = ruToEn;
  missingRussianKey.erase(U'й');
  auto missingEnglishValue = ruToEn;
  missingEnglishValue[U'й'] = U'1';
  EXPECT_FALSE(LayoutMap::install(missingKey, ruToEn));
  EXPECT_FALSE(LayoutMap::install(missingValue, ruToEn));
  EXPECT_FALSE(LayoutMap::install(enToRu, missingRussianKey));
  EXPECT_FALSE(LayoutMap::install(enToRu, missingEnglishValue));
  EXPECT_TRUE(LayoutMap::install(enToRu, ruToEn));
}

TEST(LayoutMap, ACompleteMapMayHoldMoreKeys) {
  auto enToRu = LayoutMap::enToRu();
  auto ruToEn = LayoutMap::ruToEn();
  enToRu[U'§'] = U'>';
  ruToEn[U'>'] = U'§';
  EXPECT_TRUE(LayoutMap::install(enToRu, ruToEn));
  EXPECT_EQ(LayoutMap::convert("§", Language::english), ">");
  EXPECT_EQ(LayoutMap::convert(">", Language::russian), "§");
}

TEST(LayoutMap, ACompleteMapWorksAgainAfterAnIncompleteOne) {
  const auto enToRu = LayoutMap::enToRu();
  const auto ruToEn = LayoutMap::ruToEn();
  EXPECT_FALSE(LayoutMap::install({}, {}));
  EXPECT_TRUE(LayoutMap::install(enToRu, ruToEn));
  EXPECT_TRUE(LayoutMap::isAvailable());
  EXPECT_EQ(LayoutMap::russianLetterKeys().size(), 14u);
  EXPECT_EQ(LayoutMap::convert("ghbdtn", Language::english), "привет");
}

TEST(LayoutMap, LetterKeysOfAMapFollowTheMap) {
  const LayoutMap::Map map = {{U'§', U'ё'}, {U'a', U'ф'}, {U'1', U'!'}, {U';', U'x'}};
  EXPECT_EQ(LayoutMap::letterKeys(map), LayoutMap::Set{U'§'});
}

TEST(LayoutMap, ConvertsKeysBeyondBothAlphabets) {
  auto enToRu = LayoutMap::enToRu();
  auto ruToEn = LayoutMap::ruToEn();
  enToRu[U'\u2019'] = U'э';
  enToRu[U'#'] = U'\u2116';
  ruToEn[U'\u2116'] = U'#';
  ASSERT_TRUE(LayoutMap::install(enToRu, ruToEn));
  EXPECT_EQ(LayoutMap::convert("’#f—", Language::english), "э№а—");
  EXPECT_EQ(LayoutMap::convert("№а—", Language::russian), "#f—");
  ASSERT_TRUE(LayoutMap::isRussianLetterKey("’"));
}

}  // namespace
}  // namespace tessarok
