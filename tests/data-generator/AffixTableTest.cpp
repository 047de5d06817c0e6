#include "AffixTable.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

using Words = std::vector<std::string>;

Words expanded(std::string_view affixFile, std::u32string_view stem, std::u32string_view flags) {
  std::vector<std::u32string> forms;
  AffixTable::parse(affixFile, "x.aff").expand(stem, flags, forms);
  return toUtf8Words(forms);
}

std::string parseError(std::string_view affixFile) {
  return inputErrorOf([&] { (void)AffixTable::parse(affixFile, "x.aff"); });
}

TEST(AffixTable, StripsAndAddsASuffixWhenTheConditionHolds) {
  constexpr std::string_view kPast =
      "SET UTF-8\n"
      "SFX L Y 2\n"
      "SFX L ть л [^зс]ть\n"
      "SFX L ть ла [^с]ть\n";
  EXPECT_EQ(expanded(kPast, U"читать", U"L"), (Words{"читать", "читал", "читала"}));
  EXPECT_EQ(expanded(kPast, U"лезть", U"L"), (Words{"лезть", "лезла"}));
  EXPECT_EQ(expanded(kPast, U"сесть", U"L"), (Words{"сесть"}));
}

TEST(AffixTable, ZeroStandsForNothing) {
  EXPECT_EQ(expanded("SFX K Y 2\nSFX K 0 а .\nSFX K ок 0 ок\n", U"кусок", U"K"),
            (Words{"кусок", "кусока", "кус"}));
}

TEST(AffixTable, ADotInsideAConditionIsAnyLetter) {
  constexpr std::string_view kRule = "SFX L Y 1\nSFX L сть л [^ч].сть\n";
  EXPECT_EQ(expanded(kRule, U"упасть", U"L"), (Words{"упасть", "упал"}));
  EXPECT_EQ(expanded(kRule, U"прочесть", U"L"), (Words{"прочесть"}));
  EXPECT_EQ(expanded(kRule, U"асть", U"L"), (Words{"асть"})) << "shorter than the condition";
}

TEST(AffixTable, ARuleNeverEatsTheWholeStem) {
  EXPECT_EQ(expanded("SFX A Y 1\nSFX A ый ого ый\n", U"ый", U"A"), (Words{"ый"}));
}

TEST(AffixTable, TheStripMustBeThereWhateverTheConditionSays) {
  EXPECT_EQ(expanded("SFX A Y 1\nSFX A ый ого .\n", U"синий", U"A"), (Words{"синий"}));
}

TEST(AffixTable, OnlyTheFlagsOfTheEntryApply) {
  constexpr std::string_view kTwo = "SFX A Y 1\nSFX A 0 s .\nSFX B Y 1\nSFX B 0 ed .\n";
  EXPECT_EQ(expanded(kTwo, U"walk", U"B"), (Words{"walk", "walked"}));
  EXPECT_EQ(expanded(kTwo, U"walk", U"AB"), (Words{"walk", "walks", "walked"}));
  EXPECT_EQ(expanded(kTwo, U"walk", U""), (Words{"walk"}));
}

TEST(AffixTable, PrefixConditionsLookAtTheStart) {
  constexpr std::string_view kPrefix = "PFX P Y 1\nPFX P 0 un [^u]\n";
  EXPECT_EQ(expanded(kPrefix, U"do", U"P"), (Words{"do", "undo"}));
  EXPECT_EQ(expanded(kPrefix, U"use", U"P"), (Words{"use"}));
}

TEST(AffixTable, PrefixesAndSuffixesCrossWhenBothAllowIt) {
  constexpr std::string_view kBoth = "PFX P Y 1\nPFX P 0 un .\nSFX S Y 1\nSFX S 0 s .\n";
  EXPECT_EQ(expanded(kBoth, U"tie", U"PS"), (Words{"tie", "ties", "untie", "unties"}));
}

TEST(AffixTable, NoCrossProductWhenEitherSideForbidsIt) {
  const Words expected{"tie", "ties", "untie"};
  EXPECT_EQ(expanded("PFX P N 1\nPFX P 0 un .\nSFX S Y 1\nSFX S 0 s .\n", U"tie", U"PS"), expected);
  EXPECT_EQ(expanded("PFX P Y 1\nPFX P 0 un .\nSFX S N 1\nSFX S 0 s .\n", U"tie", U"PS"), expected);
}

TEST(AffixTable, KnowsItsFlags) {
  const AffixTable table = AffixTable::parse("SFX Ж Y 1\nSFX Ж 0 s .\n", "x.aff");
  EXPECT_TRUE(table.hasFlag(U'Ж'));
  EXPECT_FALSE(table.hasFlag(U'Q'));
}

TEST(AffixTable, SkipsCommentsAndWhatOnlyServesSuggestions) {
  EXPECT_EQ(parseError("# Copyright\n\nSET UTF-8\nTRY аоу\nREP 1\nREP a b\n"), "no error");
}

TEST(AffixTable, RefusesWhatItDoesNotUnderstand) {
  EXPECT_EQ(parseError("SET UTF-8\nNEEDAFFIX X\n"),
            "x.aff:2: the directive 'NEEDAFFIX' is not supported");
  EXPECT_EQ(parseError("FLAG num\n"), "x.aff:1: only flags of one character are supported");
  EXPECT_EQ(parseError("SFX A Y 1\nSFX A 0 s/B .\n"),
            "x.aff:2: flags on an affix are not supported");
}

TEST(AffixTable, RefusesBrokenLines) {
  EXPECT_EQ(parseError("SFX A\n"), "x.aff:1: an affix line has at least four columns");
  EXPECT_EQ(parseError("SFX A X 1\n"), "x.aff:1: the header's third column is Y or N");
  EXPECT_EQ(parseError("SFX A Y one\n"), "x.aff:1: the header's fourth column is a number");
  EXPECT_EQ(parseError("SFX A Y 1\nSFX A 0 s [ab\n"), "x.aff:2: '[' without ']' in the condition");
  EXPECT_EQ(parseError("SFX A Y 1\nSFX A 0 s ab]\n"), "x.aff:2: ']' without '[' in the condition");
  EXPECT_EQ(parseError("SFX A Y 1\nSFX A 0 s [^]\n"), "x.aff:2: empty brackets in the condition");
  EXPECT_EQ(parseError("SFX A Y 1\nPFX A 0 s .\n"),
            "x.aff:2: the flag is both a prefix and a suffix");
}

TEST(AffixTable, RefusesANumberOfRulesOtherThanAnnounced) {
  EXPECT_EQ(parseError("\nSFX A Y 2\nSFX A 0 s .\n"),
            "x.aff:2: the class announces 2 rules and has 1");
  EXPECT_EQ(parseError("SFX A Y 1\nSFX A 0 s .\nSFX A 0 t .\n"),
            "x.aff:3: more rules than the header announces");
}

}  // namespace
}  // namespace tessarok::makedata::test
