#include <algorithm>
#include <gtest/gtest.h>

#include "desktops/layouts/KeyTable.h"
#include "tests/support/FakeDesktop.h"
#include "typing/InputSource.h"

namespace tessarok {
namespace {

using platform::PhysicalLayoutType;
using testing::FakeDesktop;
using testing::FakeLayout;
using Names = std::vector<std::string>;

constexpr const char* kUS = "com.apple.keylayout.US";
constexpr const char* kABC = "com.apple.keylayout.ABC";
constexpr const char* kBritish = "com.apple.keylayout.British";
constexpr const char* kRussian = "com.apple.keylayout.Russian";
constexpr const char* kRussianWin = "com.apple.keylayout.RussianWin";
constexpr const char* kUkrainian = "com.apple.keylayout.Ukrainian";

/// A layout with the keys of one of the two tables.
std::shared_ptr<FakeLayout> layout(const std::string& identifier, bool russian) {
  const auto& table = russian ? layouts::KeyTable::russian() : layouts::KeyTable::english();
  auto made = std::make_shared<FakeLayout>();
  made->ownIdentifier = identifier;
  for (std::uint16_t code = 0; code <= 50; ++code) {
    for (const bool shift : {false, true}) {
      if (const auto c = table.character(code, shift)) made->keys[{code, shift}] = {*c};
    }
  }
  return made;
}

class InputSourceTest : public ::testing::Test {
 protected:
  void enable(const Names& identifiers) {
    sources.layouts.clear();
    for (const auto& identifier : identifiers)
      sources.layouts.push_back(
          layout(identifier, identifier == kRussian || identifier == kRussianWin));
  }
  /// The system changes the layout, whoever asked for it.
  void makeCurrent(const std::string& identifier) { sources.active = identifier; }
  void advance(double seconds) { desktop.runLoop().advance(seconds); }

  FakeDesktop desktop;
  testing::FakeInputSources& sources = desktop.inputSources();
  testing::FakeKeyboard& keyboard = desktop.keyboard();
};

TEST_F(InputSourceTest, GroupsAreExact) {
  EXPECT_TRUE(InputSource::isInGroup(kUS, Language::english));
  EXPECT_TRUE(InputSource::isInGroup("com.apple.keylayout.USInternational-PC", Language::english));
  EXPECT_TRUE(InputSource::isInGroup(kRussianWin, Language::russian));
  EXPECT_FALSE(InputSource::isInGroup(kUS, Language::russian));
  EXPECT_EQ(InputSource::languageOf(kBritish), Language::english);
  EXPECT_EQ(InputSource::languageOf(kRussian), Language::russian);
  EXPECT_EQ(InputSource::languageOf(kUkrainian), std::nullopt);
  EXPECT_EQ(InputSource::languageOf(std::nullopt), std::nullopt);
  EXPECT_FALSE(InputSource::isInGroup("com.apple.keylayout.us", Language::english));
  EXPECT_FALSE(InputSource::isInGroup("com.apple.keylayout.USExtended", Language::english));
  EXPECT_FALSE(InputSource::isInGroup("", Language::english));
  EXPECT_FALSE(InputSource::isInGroup("", Language::russian));
}

TEST_F(InputSourceTest, SwitchesToTheLayoutOfTheGroupUsedLast) {
  enable({kBritish, kRussian, kABC});
  makeCurrent(kABC);
  InputSource::prepareLayoutMaps();
  makeCurrent(kRussian);
  EXPECT_TRUE(InputSource::switchTo(Language::english));
  EXPECT_EQ(sources.selections, Names{kABC});
}

TEST_F(InputSourceTest, WithoutALastOneSwitchesToTheFirstOfTheSystemsOrder) {
  enable({kBritish, kRussian, kABC});
  makeCurrent(kRussian);
  InputSource::prepareLayoutMaps();
  EXPECT_TRUE(InputSource::switchTo(Language::english));
  EXPECT_EQ(sources.selections, Names{kBritish});
}

TEST_F(InputSourceTest, ALayoutUsedLastButNoLongerEnabledIsPassedOver) {
  enable({kBritish, kRussian, kABC});
  makeCurrent(kABC);
  InputSource::prepareLayoutMaps();
  enable({kBritish, kRussian});
  makeCurrent(kRussian);
  InputSource::prepareLayoutMaps();
  EXPECT_TRUE(InputSource::switchTo(Language::english));
  EXPECT_EQ(sources.selections, Names{kBritish});
}

TEST_F(InputSourceTest, TheActiveGroupIsNotSelectedAgain) {
  makeCurrent(kUS);
  EXPECT_TRUE(InputSource::switchTo(Language::english));
  EXPECT_TRUE(sources.selections.empty());
}

TEST_F(InputSourceTest, FromAForeignLayoutASwitchIsTried) {
  enable({kUkrainian, kBritish, kRussian});
  makeCurrent(kUkrainian);
  EXPECT_TRUE(InputSource::switchTo(Language::english));
  EXPECT_EQ(sources.selections, Names{kBritish});
}

TEST_F(InputSourceTest, FromAForeignLayoutTheLastOneUsedIsSelected) {
  enable({kBritish, kABC, kRussian, kUkrainian});
  makeCurrent(kABC);
  InputSource::prepareLayoutMaps();
  makeCurrent(kUkrainian);
  InputSource::prepareLayoutMaps();
  EXPECT_TRUE(InputSource::switchTo(Language::english));
  EXPECT_EQ(sources.selections, Names{kABC});
}

TEST_F(InputSourceTest, WithoutALayoutOfTheGroupNothingIsSelected) {
  enable({kUkrainian, kABC});
  makeCurrent(kABC);
  EXPECT_FALSE(InputSource::switchTo(Language::russian));
  EXPECT_TRUE(sources.selections.empty());
}

TEST_F(InputSourceTest, ARefusedSelectionGoesOnToTheNext) {
  enable({kRussianWin, kRussian, kUS});
  makeCurrent(kUS);
  sources.refuses[kRussianWin] = true;
  EXPECT_TRUE(InputSource::switchTo(Language::russian));
  EXPECT_EQ(sources.selections, (Names{kRussianWin, kRussian}));
  // From now on the one that worked comes first.
  sources.refuses.clear();
  makeCurrent(kUS);
  EXPECT_TRUE(InputSource::switchTo(Language::russian));
  EXPECT_EQ(sources.selections.back(), kRussian);
}

TEST_F(InputSourceTest, WhenEverySelectionIsRefusedTheSwitchFails) {
  enable({kRussianWin, kRussian, kUS});
  sources.refuses = {{kRussianWin, true}, {kRussian, true}};
  EXPECT_FALSE(InputSource::switchTo(Language::russian));
  EXPECT_EQ(sources.selections, (Names{kRussianWin, kRussian}));
  EXPECT_EQ(sources.active, kUS);
}

TEST_F(InputSourceTest, LayoutsAreListedAfreshOnlyBeforeThePreparation) {
  InputSource::switchTo(Language::russian);
  EXPECT_EQ(sources.listings, 1);
  InputSource::prepareLayoutMaps();
  EXPECT_EQ(sources.listings, 2);
  makeCurrent(kUS);
  InputSource::switchTo(Language::russian);
  EXPECT_EQ(sources.listings, 2);
}

TEST_F(InputSourceTest, ASourceWithoutIdentifierIsNeverChosen) {
  sources.layouts.insert(sources.layouts.begin(), std::make_shared<FakeLayout>());
  InputSource::prepareLayoutMaps();
  EXPECT_TRUE(InputSource::switchTo(Language::russian));
  EXPECT_EQ(sources.selections, Names{kRussianWin});
}

TEST_F(InputSourceTest, WorksWithoutACurrentSource) {
  sources.active.reset();
  EXPECT_FALSE(InputSource::prepareLayoutMaps());
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
  EXPECT_TRUE(InputSource::switchTo(Language::russian));
}

// What the keys give.

InputSource::Maps mapsOf(const FakeLayout& english, const FakeLayout& russian) {
  return InputSource::physicalMaps(english, russian, 40).value();
}

bool wasAsked(const FakeLayout& layout, std::uint16_t code) {
  return std::any_of(layout.asked.begin(), layout.asked.end(),
                     [&](const auto& key) { return key.first == code; });
}

TEST_F(InputSourceTest, TheExtraKeyOfIsoKeyboardsIsReadOnlyThere) {
  const auto english = layout(kABC, false);
  const auto russian = layout(kRussian, true);
  const auto ansi = mapsOf(*english, *russian);
  EXPECT_FALSE(wasAsked(*english, 10));
  EXPECT_FALSE(ansi.enToRu.contains(U'§'));
  keyboard.shape = PhysicalLayoutType::jis;
  EXPECT_FALSE(mapsOf(*english, *russian).enToRu.contains(U'§'));
  keyboard.shape = PhysicalLayoutType::iso;
  const auto iso = mapsOf(*english, *russian);
  EXPECT_EQ(iso.enToRu.at(U'§'), U'>');
  EXPECT_EQ(iso.enToRu.at(U'±'), U'<');
  EXPECT_EQ(iso.ruToEn.at(U'<'), U'±');
}

TEST_F(InputSourceTest, KeysAreReadPlainAndWithShift) {
  const auto maps = mapsOf(*layout(kUS, false), *layout(kRussianWin, true));
  EXPECT_EQ(maps.enToRu.at(U'q'), U'й');
  EXPECT_EQ(maps.enToRu.at(U'Q'), U'Й');
  EXPECT_EQ(maps.enToRu.at(U'/'), U'.');
  EXPECT_EQ(maps.enToRu.at(U'?'), U',');
  EXPECT_EQ(maps.ruToEn.at(U'Ё'), U'~');
}

TEST_F(InputSourceTest, OnlyTheMainBlockOfTheKeyboardIsRead) {
  FakeLayout english(kUS, {{{50, false}, u"a"}, {{51, false}, u"b"}});
  FakeLayout russian(kRussian, {{{50, false}, u"а"}, {{51, false}, u"б"}});
  const auto maps = mapsOf(english, russian);
  EXPECT_EQ(maps.enToRu, (LayoutMap::Map{{U'a', U'а'}}));
}

TEST_F(InputSourceTest, ACharacterThatTwoKeysGiveDifferentlyIsLeftOut) {
  FakeLayout english(kUS, {{{0, false}, u"x"}, {{1, false}, u"x"}, {{2, false}, u"y"}});
  FakeLayout russian(kRussian, {{{0, false}, u"а"}, {{1, false}, u"б"}, {{2, false}, u"в"}});
  const auto maps = mapsOf(english, russian);
  EXPECT_EQ(maps.enToRu, (LayoutMap::Map{{U'y', U'в'}}));
  EXPECT_EQ(maps.ruToEn, (LayoutMap::Map{{U'а', U'x'}, {U'б', U'x'}, {U'в', U'y'}}));
}

TEST_F(InputSourceTest, TwoKeysThatAgreeAreNoConflict) {
  FakeLayout english(kUS, {{{0, false}, u"x"}, {{1, true}, u"x"}});
  FakeLayout russian(kRussian, {{{0, false}, u"а"}, {{1, true}, u"а"}});
  const auto maps = mapsOf(english, russian);
  EXPECT_EQ(maps.enToRu, (LayoutMap::Map{{U'x', U'а'}}));
  EXPECT_EQ(maps.ruToEn, (LayoutMap::Map{{U'а', U'x'}}));
}

TEST_F(InputSourceTest, AConflictStaysOneWhenTheFirstPairComesAgain) {
  FakeLayout english(kUS, {{{0, false}, u"x"}, {{1, false}, u"x"}, {{2, false}, u"x"}});
  FakeLayout russian(kRussian, {{{0, false}, u"а"}, {{1, false}, u"б"}, {{2, false}, u"а"}});
  EXPECT_TRUE(mapsOf(english, russian).enToRu.empty());
}

TEST_F(InputSourceTest, KeysThatGiveNoSingleVisibleCharacterAreSkipped) {
  FakeLayout english(kUS, {{{0, false}, u"a"},
                           {{1, false}, u"ab"},
                           {{2, false}, u"\t"},
                           {{3, false}, u" "},
                           {{4, false}, u"\u00a0"},
                           {{5, false}, u""},
                           {{6, false}, u"g"},
                           {{7, false}, u"\x7f"},
                           {{8, false}, {char16_t{0xD83D}}},
                           {{9, false}, u"\n"}});
  FakeLayout russian(kRussian, {});
  for (std::uint16_t code = 0; code < 10; ++code)
    russian.keys[{code, false}] = std::u16string(1, static_cast<char16_t>(u'а' + code));
  russian.keys[{6, false}] = u"";
  const auto maps = mapsOf(english, russian);
  EXPECT_EQ(maps.enToRu, (LayoutMap::Map{{U'a', U'а'}}));
  EXPECT_EQ(maps.ruToEn, (LayoutMap::Map{{U'а', U'a'}}));
}

TEST_F(InputSourceTest, HalvesOfACharacterAreSkippedAndTheirNeighboursMapped) {
  FakeLayout english(kUS, {{{0, false}, {char16_t{0xD7FF}}},
                           {{1, false}, {char16_t{0xD800}}},
                           {{2, false}, {char16_t{0xDFFF}}},
                           {{3, false}, u"\uF8FF"}});
  FakeLayout russian(
      kRussian, {{{0, false}, u"а"}, {{1, false}, u"б"}, {{2, false}, u"в"}, {{3, false}, u"г"}});
  const auto maps = mapsOf(english, russian);
  EXPECT_EQ(maps.enToRu, (LayoutMap::Map{{char32_t{0xD7FF}, U'а'}, {U'\uF8FF', U'г'}}));
}

TEST_F(InputSourceTest, WithoutLayoutDataThereAreNoMaps) {
  const auto english = layout(kUS, false);
  const auto russian = layout(kRussian, true);
  russian->hasData = false;
  EXPECT_FALSE(InputSource::physicalMaps(*english, *russian, 40).has_value());
  EXPECT_FALSE(InputSource::physicalMaps(*russian, *english, 40).has_value());
}

// Who changed the layout.

class PreparedTest : public InputSourceTest {
 protected:
  PreparedTest() {
    enable({kUS, kRussian, kRussianWin, kUkrainian});
    EXPECT_FALSE(InputSource::prepareLayoutMaps());
    EXPECT_TRUE(InputSource::canProcessCurrentLayout());
  }
};

TEST_F(PreparedTest, AChangeToTheLayoutJustSelectedIsTheProgramsOwn) {
  InputSource::switchTo(Language::russian);
  advance(0.5);
  EXPECT_FALSE(InputSource::prepareLayoutMaps());
}

TEST_F(PreparedTest, TwoSecondsAreStillTheProgramsOwn) {
  InputSource::switchTo(Language::russian);
  advance(2.0);
  EXPECT_FALSE(InputSource::prepareLayoutMaps());
}

TEST_F(PreparedTest, ALateChangeIsTheUsers) {
  InputSource::switchTo(Language::russian);
  advance(3.0);
  EXPECT_TRUE(InputSource::prepareLayoutMaps());
}

TEST_F(PreparedTest, AChangeToAnotherLayoutThanTheSelectedOneIsTheUsers) {
  InputSource::switchTo(Language::russian);
  makeCurrent(kRussianWin);
  advance(0.5);
  EXPECT_TRUE(InputSource::prepareLayoutMaps());
}

TEST_F(PreparedTest, AnUnaskedChangeIsTheUsers) {
  makeCurrent(kRussian);
  EXPECT_TRUE(InputSource::prepareLayoutMaps());
  EXPECT_FALSE(InputSource::prepareLayoutMaps());
}

TEST_F(PreparedTest, ARequestExplainsOneChangeOnly) {
  InputSource::switchTo(Language::russian);
  EXPECT_FALSE(InputSource::prepareLayoutMaps());
  makeCurrent(kUS);
  EXPECT_TRUE(InputSource::prepareLayoutMaps());
  makeCurrent(kRussian);
  EXPECT_TRUE(InputSource::prepareLayoutMaps());
}

TEST_F(PreparedTest, SwitchingBetweenThePreparedLayoutsNeedsNoPreparation) {
  InputSource::switchTo(Language::russian);
  const auto listings = sources.listings;
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_EQ(sources.listings, listings);
}

TEST_F(PreparedTest, SwitchingBackNeedsNoPreparationEither) {
  makeCurrent(kRussian);
  InputSource::prepareLayoutMaps();
  InputSource::switchTo(Language::english);
  const auto listings = sources.listings;
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
  EXPECT_EQ(sources.listings, listings);
}

TEST_F(PreparedTest, TheTimerNoticesAChangeByTheUserByItself) {
  makeCurrent(kRussian);
  EXPECT_TRUE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
}

TEST_F(PreparedTest, AChangeByTheUserNeedsAPreparation) {
  makeCurrent(kRussian);
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  EXPECT_TRUE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_TRUE(InputSource::canProcessCurrentLayout());
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(PreparedTest, AnOwnSwitchNoticedLateNeedsAPreparation) {
  InputSource::switchTo(Language::russian);
  advance(2.5);
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(PreparedTest, ASwitchToALayoutOutsideThePairNeedsAPreparation) {
  // The pair is US and the first Russian layout; that one is refused, so the other is selected.
  sources.refuses[kRussian] = true;
  EXPECT_TRUE(InputSource::switchTo(Language::russian));
  EXPECT_EQ(sources.active, kRussianWin);
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(PreparedTest, AnotherKeyboardNeedsAPreparation) {
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
  keyboard.model = 41;
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
  // Nobody changed the layout.
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(PreparedTest, TheTimerNoticesANewKeyboardByItself) {
  keyboard.model = 41;
  keyboard.shape = PhysicalLayoutType::iso;
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_TRUE(LayoutMap::enToRu().contains(U'§'));
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
}

TEST_F(PreparedTest, MapsOfTheSamePairAreNotBuiltAgain) {
  const auto& us = static_cast<FakeLayout&>(*sources.layouts.front());
  const auto asked = us.asked.size();
  EXPECT_GT(asked, 0u);
  InputSource::prepareLayoutMaps();
  InputSource::switchTo(Language::russian);
  InputSource::prepareLayoutMaps();
  EXPECT_EQ(us.asked.size(), asked);
  EXPECT_EQ(InputSource::nextPreparationRetry(), 0);
}

TEST_F(PreparedTest, AForeignLayoutCannotBeProcessed) {
  makeCurrent(kUkrainian);
  const auto now = desktop.clock().uptime();
  EXPECT_TRUE(InputSource::prepareLayoutMaps());
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  EXPECT_EQ(InputSource::nextPreparationRetry(), now + 30.0);
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(InputSourceTest, AFailedPreparationIsRetriedAfterThirtySeconds) {
  enable({kUS});
  InputSource::prepareLayoutMaps();
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  enable({kUS, kRussian});
  advance(29.9);
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  advance(0.1);
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_TRUE(InputSource::canProcessCurrentLayout());
  EXPECT_EQ(InputSource::nextPreparationRetry(), 0);
}

TEST_F(InputSourceTest, LayoutsWithoutDataCannotBeProcessed) {
  sources.layouts = {layout(kUS, false), layout(kRussian, true)};
  static_cast<FakeLayout&>(*sources.layouts.back()).hasData = false;
  InputSource::prepareLayoutMaps();
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  EXPECT_GT(InputSource::nextPreparationRetry(), 0);
}

TEST(KeyTableTest, EachCharacterIsOnOneKeyAndOtherKeysGiveNone) {
  for (const auto* table : {&layouts::KeyTable::english(), &layouts::KeyTable::russian()}) {
    int keys = 0;
    for (std::int64_t code = -1; code < 128; ++code)
      keys += table->character(code, false) ? 1 : 0;
    EXPECT_EQ(keys, 48);
    // Return, Tab, Space, Backspace.
    for (const int code : {36, 48, 49, 51})
      EXPECT_EQ(table->character(code, false), std::nullopt);
  }
}

TEST_F(InputSourceTest, LayoutsThatLackALetterCannotBeProcessed) {
  auto russian = layout(kRussian, true);
  russian->keys.erase({50, false});  // ё
  sources.layouts = {layout(kUS, false), russian};
  InputSource::prepareLayoutMaps();
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  EXPECT_FALSE(LayoutMap::isAvailable());
  EXPECT_TRUE(LayoutMap::enToRu().empty());
}

TEST_F(InputSourceTest, BeforeThePreparationEverythingCountsAsPrepared) {
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
  makeCurrent(kUkrainian);
  EXPECT_TRUE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(InputSourceTest, BeforeThePreparationNothingCanBeProcessed) {
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
}

TEST_F(InputSourceTest, WithoutAnEnglishLayoutNothingCanBeProcessed) {
  enable({kRussian});
  makeCurrent(kRussian);
  EXPECT_FALSE(InputSource::prepareLayoutMaps());
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
}

TEST_F(InputSourceTest, WithoutACurrentSourceTheTimerPreparesAgainAndAgain) {
  sources.active.reset();
  InputSource::prepareLayoutMaps();
  const auto listings = sources.listings;
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_EQ(sources.listings, listings + 1);
}

TEST_F(InputSourceTest, ASwitchOfItsOwnFromAForeignLayoutNeedsAPreparation) {
  enable({kUS, kRussian, kUkrainian});
  makeCurrent(kUkrainian);
  InputSource::prepareLayoutMaps();
  EXPECT_TRUE(InputSource::switchTo(Language::russian));
  EXPECT_FALSE(InputSource::isPreparedForCurrentInputSource());
}

TEST_F(InputSourceTest, TheTimerPreparesWhatWasNeverPrepared) {
  EXPECT_FALSE(InputSource::refreshKeyboardTypeIfNeeded());
  EXPECT_TRUE(InputSource::canProcessCurrentLayout());
}

}  // namespace
}  // namespace tessarok
