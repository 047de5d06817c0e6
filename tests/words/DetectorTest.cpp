#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "words/BuiltinPacks.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/Proto.h"
#include "words/UserDict.h"

namespace tessarok {
namespace {

using testing::FakeDesktop;
using Decision = Detector::Decision;
using enum Detector::Confidence;

const std::optional<Decision> kNone;

std::optional<Decision> toRussian(Detector::Confidence confidence, std::size_t trim = 0) {
  return Decision{Language::russian, confidence, trim};
}
std::optional<Decision> toEnglish(Detector::Confidence confidence, std::size_t trim = 0) {
  return Decision{Language::english, confidence, trim};
}

/// Small dictionaries and nothing else, unless a test adds it before its first word.
class DetectorTest : public ::testing::Test {
 protected:
  DetectorTest() {
    desktop.addResource("dict_en", "and\ncat\nhello\nthe\n");
    desktop.addResource("dict_ru", "кот\nна\nпривет\nслово\nход\n");
  }
  /// n-grams of letters a test needs; both languages get all six sets.
  void addPrototypes(std::string_view russianPairs, std::string_view russianTriples,
                     std::string_view russianMarked, std::string_view englishMarked) {
    desktop.addResource("proto_ru2", russianPairs);
    desktop.addResource("proto_ru3", russianTriples);
    desktop.addResource("proto_ru3b", russianMarked);
    desktop.addResource("proto_en2", "zz\n");
    desktop.addResource("proto_en3", "zzz\n");
    desktop.addResource("proto_en3b", englishMarked);
    Proto::load();
  }

  FakeDesktop desktop;
};

TEST_F(DetectorTest, AConversionInTheDictionaryIsCertain) {
  EXPECT_EQ(Detector::decide("ghbdtn", 0, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("руддщ", 0, 0), toEnglish(high));
}

TEST_F(DetectorTest, CaseDoesNotMatter) {
  EXPECT_EQ(Detector::decide("Ghbdtn", 0, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("GHBDTN", 0, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("РУДДЩ", 0, 0), toEnglish(high));
}

TEST_F(DetectorTest, PunctuationThatSharesAKeyIsTriedAsPartOfTheWordFirst) {
  EXPECT_EQ(Detector::decide("ghbdtn,", 0, 0), toRussian(high, 1));
  EXPECT_EQ(Detector::decide("ghbdtn,.;", 0, 0), toRussian(high, 3));
  EXPECT_EQ(Detector::decide("руддщ,", 0, 0), toEnglish(high, 1));
  EXPECT_EQ(Detector::decide("ghbdtn1", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("ghbdtn/", 0, 0), kNone);
}

TEST_F(DetectorTest, APunctuationKeyThatBelongsToTheWordIsConverted) {
  desktop.addResource("dict_ru", "люблю\n");
  EXPECT_EQ(Detector::decide("k.,k.", 0, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("k.,k.,", 0, 0), toRussian(high, 1));
}

TEST_F(DetectorTest, OneCharacterSaysTooLittle) {
  EXPECT_EQ(Detector::decide("z", 5, 0), kNone);
  EXPECT_EQ(Detector::decide("я", 0, 5), kNone);
  EXPECT_EQ(Detector::decide("", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("z,", 0, 0), kNone);
}

TEST_F(DetectorTest, MixedAlphabetsAndForeignCharactersAreLeftAlone) {
  EXPECT_EQ(Detector::decide("ghbdtт", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("gh1dtn", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("gh-bdtn", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("ghbdt\u0301n", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("їрудд", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("1234", 0, 0), kNone);
  EXPECT_EQ(Detector::decide(",.;", 0, 0), kNone);
}

TEST_F(DetectorTest, AWhitelistedPairNeedsTheDictionaryAndTheFrequencyList) {
  desktop.addResource("freq_short_ru", "на\n");
  EXPECT_EQ(Detector::decide("yf", 0, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("yj", 0, 0), kNone);  // но is in no dictionary here
}

TEST_F(DetectorTest, AWhitelistedPairWithoutTheFrequencyListIsLeftAlone) {
  EXPECT_EQ(Detector::decide("yf", 0, 0), kNone);
}

TEST_F(DetectorTest, AWhitelistedPairMissingInTheDictionaryIsLeftAlone) {
  desktop.addResource("dict_ru", "привет\n");
  desktop.addResource("freq_short_ru", "на\n");
  EXPECT_EQ(Detector::decide("yf", 0, 0), kNone);
}

TEST_F(DetectorTest, AnyOtherPairIsLookedAtOnlyAfterRussianWords) {
  desktop.addResource("dict_ru", "привет\nчя\n");
  desktop.addResource("freq_short_ru", "чя\n");
  EXPECT_EQ(Detector::decide("xz", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("xz", 1, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("xz", 0, 1), kNone);
}

TEST_F(DetectorTest, APairAfterRussianWordsStillNeedsSupport) {
  EXPECT_EQ(Detector::decide("xz", 3, 0), kNone);
}

TEST_F(DetectorTest, ACyrillicPairIsLookedAtOnlyAfterEnglishWords) {
  desktop.addResource("dict_en", "hello\nio\n");
  desktop.addResource("freq_short_en", "io\n");
  EXPECT_EQ(Detector::decide("шщ", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("шщ", 1, 0), kNone);
  EXPECT_EQ(Detector::decide("шщ", 0, 1), toEnglish(high));
}

TEST_F(DetectorTest, WordsOfTheTypedLanguageAreLeftAlone) {
  // "the" gives еру, but that is not asked any more.
  EXPECT_EQ(Detector::decide("the", 3, 0), kNone);
  EXPECT_EQ(Detector::decide("hello", 3, 0), kNone);
  EXPECT_EQ(Detector::decide("слово", 0, 3), kNone);
}

TEST_F(DetectorTest, AWordOfBothLanguagesStaysAsTyped) {
  desktop.addResource("dict_en", "ghbdtn\nhello\n");
  desktop.addResource("dict_ru", "привет\nруддщ\n");
  EXPECT_EQ(Detector::decide("ghbdtn", 3, 0), kNone);
  EXPECT_EQ(Detector::decide("руддщ", 0, 3), kNone);
}

TEST_F(DetectorTest, AShortWordOfBothLanguagesStaysAsTyped) {
  desktop.addResource("dict_en", "hello\nvbh\n");
  desktop.addResource("dict_ru", "мир\nпривет\n");
  desktop.addResource("freq_short_ru", "мир\n");
  EXPECT_EQ(Detector::decide("vbh", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("vbh", 3, 0), kNone);
}

TEST_F(DetectorTest, AShortWordOfTheOtherLanguageIsConverted) {
  desktop.addResource("dict_ru", "мир\nпривет\n");
  desktop.addResource("freq_short_ru", "мир\n");
  EXPECT_EQ(Detector::decide("vbh", 0, 0), toRussian(high));
}

TEST_F(DetectorTest, AWhitelistedPairIsConvertedEvenIfItIsAnEnglishWord) {
  desktop.addResource("dict_en", "yf\n");
  desktop.addResource("freq_short_ru", "на\n");
  EXPECT_EQ(Detector::decide("yf", 0, 0), toRussian(high));
}

TEST_F(DetectorTest, AThreeLetterConversionHasToBeFrequent) {
  desktop.addResource("freq_short_en", "the\n");
  EXPECT_EQ(Detector::decide("еру", 0, 0), toEnglish(high));
  EXPECT_EQ(Detector::decide("сфе", 0, 0), kNone);  // "cat" is not on the list
  EXPECT_EQ(Detector::decide("rjn", 0, 0), kNone);  // there is no Russian list
}

TEST_F(DetectorTest, AThreeLetterConversionWithoutTheListIsLeftAlone) {
  EXPECT_EQ(Detector::decide("сфе", 0, 0), kNone);
}

TEST_F(DetectorTest, AConversionWithPunctuationIsNone) {
  desktop.addResource("dict_en", "hello\n");
  // б gives a comma.
  EXPECT_EQ(Detector::decide("рудбд", 0, 0), kNone);
}

TEST_F(DetectorTest, ListedWordsAreLeftAlone) {
  desktop.addResource("freq_short_en", "the\n");
  for (const auto* word : {"на", "вк", "чё", "to", "be"}) {
    EXPECT_TRUE(Detector::isExcluded(word)) << word;
    EXPECT_EQ(Detector::decide(word, 3, 3), kNone) << word;
  }
  EXPECT_EQ(Detector::blacklist().size(), 57u);
  EXPECT_EQ(Detector::shortWhitelist().size(), 15u);
}

TEST_F(DetectorTest, LearnedWordsAreLeftAlone) {
  IgnoreList::add("ghbdtn");
  EXPECT_EQ(Detector::decide("ghbdtn", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("GHBDTN", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("ghbdtn,", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("ghbdtn;,", 0, 0), kNone);
}

TEST_F(DetectorTest, WordsRejectedInThisSessionAreLeftAlone) {
  IgnoreList::recordRejection("ghbdtn");
  EXPECT_TRUE(Detector::isExcluded("ghbdtn"));
  EXPECT_EQ(Detector::decide("ghbdtn", 0, 0), kNone);
}

TEST_F(DetectorTest, WordsOfTheUserDictionaryAreLeftAlone) {
  testing::writeFile(UserDict::fileURL(), "РУДДЩ\n");
  UserDict::reload();
  EXPECT_EQ(Detector::decide("руддщ", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("Руддщ,", 0, 0), kNone);
}

TEST_F(DetectorTest, WordsOfAPackAreLeftAlone) {
  desktop.addResource("pack_it", "ghbdtn\n");
  BuiltinPacks::rebuild();
  EXPECT_EQ(Detector::decide("ghbdtn", 0, 0), kNone);
}

TEST_F(DetectorTest, AListedWordIsFoundHoweverItIsSpelled) {
  IgnoreList::add("рай");
  EXPECT_TRUE(Detector::isExcluded("раи\u0306"));
}

TEST_F(DetectorTest, AListedWordWithItsPunctuationIsLeftAlone) {
  IgnoreList::add("ghbdtn,");
  EXPECT_EQ(Detector::decide("ghbdtn,", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("ghbdtn", 0, 0), toRussian(high));
}

TEST_F(DetectorTest, WithoutLayoutsNothingIsDecided) {
  LayoutMap::install({}, {});
  EXPECT_EQ(Detector::decide("ghbdtn", 3, 0), kNone);
  EXPECT_EQ(Detector::decide("руддщ", 0, 3), kNone);
}

TEST_F(DetectorTest, WithoutOneDictionaryNothingIsDecided) {
  desktop.addResource("dict_en", "");
  EXPECT_EQ(Detector::decide("ghbdtn", 3, 0), kNone);
}

TEST_F(DetectorTest, LettersThatLookRightOnlyWhenConvertedAreMediumEvidence) {
  // кода: all of its n-grams are Russian; "rjlf" has none that is English.
  addPrototypes("ко\nод\nда\n", "код\nода\n", "^ко\nкод\nода\nда$\n", "^rj\nrjl\njlf\nlf$\n");
  EXPECT_EQ(Detector::decide("rjlf", 0, 0), toRussian(medium));
}

TEST_F(DetectorTest, AnImpossibleConversionIsNoEvidence) {
  addPrototypes("ко\nод\nда\n", "код\nода\n", "^ко\nкод\nода\n", "^rj\n");
  EXPECT_EQ(Detector::decide("rjlf", 0, 0), kNone);
}

TEST_F(DetectorTest, ThreeLettersAreTooFewForNGrams) {
  addPrototypes("ко\nод\n", "код\n", "^ко\nкод\nод$\n", "^zz\n");
  EXPECT_EQ(Detector::decide("rjl", 0, 0), kNone);
}

TEST_F(DetectorTest, OneMissingPrototypeSetSwitchesTheEvidenceOff) {
  addPrototypes("ко\nод\nда\n", "код\nода\n", "^ко\nкод\nода\nда$\n", "");
  EXPECT_EQ(Detector::decide("rjlf", 0, 0), kNone);
}

TEST_F(DetectorTest, PlausibilityOfNineTenthsIsEnoughAndLessIsNot) {
  // кода has three pairs and two triples: with one triple unknown it is at 0.85.
  addPrototypes("ко\nод\nда\n", "код\n", "^ко\nкод\nода\nда$\n", "^rj\nrjl\njlf\nlf$\n");
  EXPECT_EQ(Detector::decide("rjlf", 0, 0), kNone);
}

/// Words of six letters: typed "dsdjl" … "dsdjlf" gives вывода.
constexpr const char* kPairs = "вы\nыв\nво\nод\nда\n";
constexpr const char* kMarked = "^вы\nвыв\nыво\nвод\nода\nда$\n";

TEST_F(DetectorTest, AnImpossibleWordWhoseConversionEndsInAWordIsConverted) {
  // The five pairs are known, two of the four triples: 0.7 + 0.3 · 0.5 = 0.85, at least 0.75.
  desktop.addResource("dict_ru", "вода\nпривет\n");
  addPrototypes(kPairs, "выв\nыво\n", kMarked, "^zz\n");
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0), toRussian(medium));
}

TEST_F(DetectorTest, WithoutAWordAtItsEndItIsNot) {
  desktop.addResource("dict_ru", "привет\n");
  addPrototypes(kPairs, "выв\nыво\n", kMarked, "^zz\n");
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0), kNone);
}

/// A Russian word, and whether a longer word that ends in it is taken for Russian by that.
struct Ending {
  const char* name;
  /// The dictionary with it, in order.
  const char* words;
  bool speaksForAWord;
};

void PrintTo(const Ending& ending, std::ostream* out) {
  *out << ending.name;
}

class DetectorEndingTest : public DetectorTest, public ::testing::WithParamInterface<Ending> {};

TEST_P(DetectorEndingTest, SpeaksForAWordFromThreeToEightLetters) {
  // вынавывода, all nine pairs known and four of eight triples: 0.85.
  desktop.addResource("dict_ru", GetParam().words);
  addPrototypes("вы\nын\nна\nав\nыв\nво\nод\nда\n", "нав\nавы\nвыв\nыво\n",
                "^вы\nвын\nына\nнав\nавы\nвыв\nыво\nвод\nода\nда$\n", "^zz\n");
  EXPECT_EQ(Detector::decide("dsyfdsdjlf", 0, 0),
            GetParam().speaksForAWord ? toRussian(medium) : kNone);
}

INSTANTIATE_TEST_SUITE_P(, DetectorEndingTest,
                         ::testing::Values(Ending{"TwoLetters", "да\nпривет\n", false},
                                           Ending{"ThreeLetters", "ода\nпривет\n", true},
                                           Ending{"EightLetters", "навывода\nпривет\n", true},
                                           Ending{"NineLetters", "привет\nынавывода\n", false}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(DetectorTest, FiveLettersAreTooFewForTheImpossible) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  // ывода; with one of three triples known: 0.8.
  addPrototypes(kPairs, "ыво\n", "^ыв\nыво\nвод\nода\nда$\n", "^zz\n");
  EXPECT_EQ(Detector::decide("sdjlf", 0, 0), kNone);
}

TEST_F(DetectorTest, AWordThatIsPossibleAsTypedIsNotImpossible) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  desktop.addResource("proto_en2", "ds\nsd\ndj\njl\nlf\n");
  addPrototypes(kPairs, "выв\nыво\n", kMarked, "^ds\ndsd\nsdj\ndjl\njlf\nlf$\n");
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0), kNone);
}

TEST_F(DetectorTest, AfterRussianWordsAPlausibleWordThatEndsInOneIsConverted) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  // Every n-gram known: 1.0. As typed it is possible and half its pairs are English, so neither
  // of the two other kinds of evidence holds.
  desktop.addResource("proto_ru2", kPairs);
  desktop.addResource("proto_ru3", "выв\nыво\nвод\nода\n");
  desktop.addResource("proto_ru3b", kMarked);
  desktop.addResource("proto_en2", "ds\nsd\ndj\n");
  desktop.addResource("proto_en3", "dsd\nsdj\n");
  desktop.addResource("proto_en3b", "^ds\ndsd\nsdj\ndjl\njlf\nlf$\n");
  Proto::load();
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("dsdjlf", 1, 0), toRussian(medium));
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 1), kNone);
}

TEST_F(DetectorTest, NoStreakHelpsCyrillicWords) {
  desktop.addResource("dict_en", "hello\nrun\n");
  desktop.addResource("proto_en2", "ov\nve\ner\nrr\nru\nun\n");
  desktop.addResource("proto_en3", "ove\nver\nerr\nrru\nrun\n");
  desktop.addResource("proto_en3b", "^ov\nove\nver\nerr\nrru\nrun\nun$\n");
  desktop.addResource("proto_ru2", "щм\nму\nук\nкк\nкг\nгт\n");
  desktop.addResource("proto_ru3", "щму\nмук\n");
  desktop.addResource("proto_ru3b", "^щм\nщму\nмук\nукк\nккг\nкгт\nгт$\n");
  Proto::load();
  EXPECT_EQ(Detector::decide("щмуккгт", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("щмуккгт", 0, 5), kNone);
}

TEST_F(DetectorTest, TheTraceTellsTheSteps) {
  DecisionTrace trace;
  EXPECT_EQ(Detector::decide("ghbdtn,", 0, 0, &trace), toRussian(high, 1));
  EXPECT_FALSE(trace.steps().empty());
}

TEST_F(DetectorTest, ConfidencesHaveNames) {
  EXPECT_STREQ(Detector::name(high), "high");
  EXPECT_STREQ(Detector::name(medium), "medium");
}

TEST_F(DetectorTest, WithoutTheRussianDictionaryNothingIsDecided) {
  desktop.addResource("dict_ru", "");
  EXPECT_EQ(Detector::decide("руддщ", 0, 3), kNone);
}

TEST_F(DetectorTest, FourLettersAreEnoughForADictionaryWord) {
  desktop.addResource("dict_ru", "рад\nрада\n");
  EXPECT_EQ(Detector::decide("hflf", 0, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("hfl", 0, 0), kNone);
}

TEST_F(DetectorTest, OneLetterAndAPunctuationKeyAreAWordOfTwo) {
  desktop.addResource("dict_ru", "их\nпривет\n");
  desktop.addResource("freq_short_ru", "их\n");
  EXPECT_EQ(Detector::decide("b[", 1, 0), toRussian(high));
  EXPECT_EQ(Detector::decide("b[", 0, 0), kNone);
}

TEST_F(DetectorTest, PunctuationKeysWithoutALetterAreSaidToHoldNone) {
  DecisionTrace trace;
  EXPECT_EQ(Detector::decide(";;", 3, 0, &trace), kNone);
  ASSERT_FALSE(trace.steps().empty());
  EXPECT_EQ(trace.steps().front(), "it holds no letter");
}

TEST_F(DetectorTest, ADigitWithinAWordIsSaidToBeNoLetter) {
  DecisionTrace trace;
  EXPECT_EQ(Detector::decide("gh1dtn", 3, 0, &trace), kNone);
  ASSERT_FALSE(trace.steps().empty());
  EXPECT_EQ(trace.steps().front(), "it holds a character that is no letter of either layout");
}

TEST_F(DetectorTest, OneRussianLetterAndAPunctuationKeyAreARussianPair) {
  DecisionTrace trace;
  EXPECT_EQ(Detector::decide("ф;", 0, 0, &trace), kNone);
  ASSERT_FALSE(trace.steps().empty());
  EXPECT_EQ(trace.steps().front(), "two letters are converted only after English words");
}

TEST_F(DetectorTest, WithoutPrototypesOfTheTypedLanguageNothingIsImpossible) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  addPrototypes(kPairs, "выв\nыво\n", kMarked, "");
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0), kNone);
}

TEST_F(DetectorTest, AnImpossibleWordWhoseConversionLooksWrongTooStays) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  // Four of five pairs and two of four triples: 0.7 · 0.8 + 0.3 · 0.5 = 0.71.
  addPrototypes("вы\nыв\nво\nод\n", "выв\nыво\n", kMarked, "^zz\n");
  DecisionTrace trace;
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0, &trace), kNone);
  const auto& steps = trace.steps();
  EXPECT_NE(
      std::find(steps.begin(), steps.end(), "the conversion does not look like a word either"),
      steps.end());
}

TEST_F(DetectorTest, PlausibilityOfThreeQuartersIsEnoughForAnImpossibleWord) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  // навывода: all seven pairs are known and one of six triples, which is 0.75 exactly.
  addPrototypes("на\nав\nвы\nыв\nво\nод\nда\n", "нав\n", "^на\nнав\nавы\nвыв\nыво\nвод\nода\nда$\n",
                "^zz\n");
  EXPECT_EQ(Detector::decide("yfdsdjlf", 0, 0), toRussian(medium));
}

/// What is known of вывода in a run of Russian words, where nothing is impossible as typed.
class DetectorStreakTest : public DetectorTest {
 protected:
  void addPlausible(std::string_view russianTriples, std::string_view russianMarked) {
    desktop.addResource("proto_ru2", kPairs);
    desktop.addResource("proto_ru3", russianTriples);
    desktop.addResource("proto_ru3b", russianMarked);
    desktop.addResource("proto_en2", "ds\nsd\ndj\n");
    desktop.addResource("proto_en3", "dsd\nsdj\n");
    desktop.addResource("proto_en3b", "^ds\ndsd\nsdj\ndjl\njlf\nlf$\n");
    Proto::load();
  }
};

TEST_F(DetectorStreakTest, ALessPlausibleWordStays) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  addPlausible("выв\nыво\n", kMarked);
  EXPECT_EQ(Detector::decide("dsdjlf", 1, 0), kNone);
}

TEST_F(DetectorStreakTest, AWordThatEndsInNoneStays) {
  desktop.addResource("dict_ru", "привет\n");
  addPlausible("выв\nыво\nвод\nода\n", kMarked);
  EXPECT_EQ(Detector::decide("dsdjlf", 1, 0), kNone);
}

TEST_F(DetectorStreakTest, AnImpossibleWordStays) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  addPlausible("выв\nыво\nвод\nода\n", "^вы\nвыв\n");
  EXPECT_EQ(Detector::decide("dsdjlf", 1, 0), kNone);
}

TEST_F(DetectorStreakTest, ThePrototypesOfTheTypedLanguageAreNotAsked) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  desktop.addResource("proto_ru2", kPairs);
  desktop.addResource("proto_ru3", "выв\nыво\nвод\nода\n");
  desktop.addResource("proto_ru3b", kMarked);
  Proto::load();
  EXPECT_EQ(Detector::decide("dsdjlf", 0, 0), kNone);
  EXPECT_EQ(Detector::decide("dsdjlf", 1, 0), toRussian(medium));
}

TEST_F(DetectorStreakTest, WithoutPrototypesWordsStay) {
  desktop.addResource("dict_ru", "вода\nпривет\n");
  EXPECT_EQ(Detector::decide("dsdjlf", 1, 0), kNone);
}

}  // namespace
}  // namespace tessarok
