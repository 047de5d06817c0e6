#include <gtest/gtest.h>
#include <string>

#include "text/Text.h"
#include "typing/WordState.h"

namespace tessarok {
namespace {

using enum WordState::ArmedRejection;

const Boundary kSpace{" "};
const Boundary kLineEnd{"\n"};

void type(WordState& word, std::string_view text) {
  for (const auto character : text::Characters(text))
    word.append(character);
}

/// Types a word that is then converted.
void fix(WordState& word, std::string_view typed, std::string_view fixed,
         const Boundary& boundary = kSpace) {
  type(word, typed);
  word.countConverted(Language::russian, boundary);
  word.rememberConverted(fixed, typed, boundary);
  word.clearBuffer();
}

/// Presses Backspace; whether the last press armed a rejection.
bool erase(WordState& word, std::size_t times, double now = 0) {
  bool armed = false;
  for (std::size_t i = 0; i < times; ++i)
    armed = word.erase(now);
  return armed;
}

TEST(WordState, StartsBetweenWords) {
  const WordState word;
  EXPECT_TRUE(word.buffer().empty());
  EXPECT_FALSE(word.untrackableWord());
  EXPECT_EQ(word.lastFix(), nullptr);
  EXPECT_EQ(word.lastAutoFix(), nullptr);
  EXPECT_EQ(word.pendingRejection(), nullptr);
}

TEST(WordState, AWordOfSixtyFiveCharactersIsNotKnown) {
  WordState word;
  type(word, std::string(64, 'a'));
  EXPECT_EQ(word.buffer().size(), 64U);
  word.append("a");
  EXPECT_TRUE(word.untrackableWord());
  EXPECT_TRUE(word.buffer().empty());
}

TEST(WordState, CharactersAreCountedNotBytes) {
  WordState word;
  for (int i = 0; i < 64; ++i)
    word.append("я");
  EXPECT_FALSE(word.untrackableWord());
}

TEST(WordState, WhatIsNotKnownTakesNoLetters) {
  WordState word;
  word.forget();
  word.append("a");
  EXPECT_TRUE(word.buffer().empty());
  EXPECT_FALSE(erase(word, 1));
}

TEST(WordState, BackspaceShortensTheWordThenTheLastOne) {
  WordState word;
  fix(word, "ghbdtn", "привет");
  type(word, "ab");
  EXPECT_EQ(word.lastFix(), nullptr) << "a new word has begun";
  fix(word, "", "да");
  erase(word, 1);
  EXPECT_EQ(word.lastFix()->tail, "");
  erase(word, 1);
  EXPECT_EQ(word.lastFix()->text, "д");
}

TEST(WordState, TypingRightBehindAFixGoesOnWithIt) {
  WordState word;
  fix(word, "lf", "да");
  erase(word, 1);
  word.append("ж");
  EXPECT_EQ(word.buffer(), "даж");
  EXPECT_EQ(word.lastAutoFix(), nullptr);
}

TEST(WordState, ErasingAllOfAFixArmsItsRejection) {
  WordState word;
  fix(word, "lf", "да");
  EXPECT_FALSE(erase(word, 2));
  EXPECT_TRUE(erase(word, 1, 7));
  ASSERT_NE(word.pendingRejection(), nullptr);
  EXPECT_EQ(word.pendingRejection()->typed, "lf");
  EXPECT_EQ(word.pendingRejection()->at, 7);
  EXPECT_EQ(word.lastFix(), nullptr);
  EXPECT_FALSE(erase(word, 1));
}

TEST(WordState, AWordLeftAsTypedCannotBeRejected) {
  WordState word;
  type(word, "да");
  word.leaveAsTyped(kSpace);
  word.clearBuffer();
  EXPECT_FALSE(erase(word, 3));
  EXPECT_EQ(word.pendingRejection(), nullptr);
}

TEST(WordState, TheSameWordWithinThirtySecondsConfirmsTheRejection) {
  for (const auto& [now, learned] : {std::pair(30.0, true), std::pair(30.001, false)}) {
    WordState word;
    fix(word, "lf", "да");
    erase(word, 3, 0);
    type(word, "LF");
    EXPECT_EQ(word.takeConfirmedRejection(now).has_value(), learned) << now;
    EXPECT_EQ(word.pendingRejection(), nullptr);
  }
}

TEST(WordState, OnlyTheFirstWordConfirms) {
  WordState word;
  fix(word, "lf", "да");
  erase(word, 3);
  EXPECT_FALSE(word.takeConfirmedRejection(1)) << "no word, nothing taken";
  ASSERT_NE(word.pendingRejection(), nullptr);
  type(word, "ns");
  EXPECT_FALSE(word.takeConfirmedRejection(1));
  word.clearBuffer();
  type(word, "lf");
  EXPECT_FALSE(word.takeConfirmedRejection(1));
}

TEST(WordState, MarksBehindAWordAreKeptUpToSixtyFour) {
  WordState word;
  type(word, "да");
  word.leaveAsTyped({"!"});
  word.clearBuffer();
  for (int i = 0; i < 63; ++i)
    word.leaveTooShort({"!"});
  ASSERT_NE(word.lastFix(), nullptr);
  EXPECT_EQ(word.lastFix()->tail.size(), 64U);
  word.leaveTooShort({"!"});
  EXPECT_EQ(word.lastFix(), nullptr);
}

TEST(WordState, TheEndOfALineForgetsTheWordBeforeIt) {
  WordState word;
  fix(word, "lf", "да", kLineEnd);
  EXPECT_EQ(word.lastFix(), nullptr);
  EXPECT_EQ(word.lastAutoFix(), nullptr);
  EXPECT_EQ(word.ruStreak(), 0);
}

TEST(WordState, AWordThatEndsWithoutACharacterChangesNothing) {
  WordState word;
  fix(word, "lf", "да");
  word.leaveTooShort({});
  EXPECT_EQ(word.lastFix()->tail, " ");
}

TEST(WordState, AHeldBackKeyIsNotPartOfTheTail) {
  WordState word;
  Boundary boundary{"\r", nullptr};
  EXPECT_EQ(boundary.text(), "\r");
  boundary.actionEvent = reinterpret_cast<platform::Event*>(&word);
  EXPECT_EQ(boundary.text(), "");
}

TEST(WordState, StreaksGrowWithConvertedWordsOfOneLanguage) {
  WordState word;
  word.countConverted(Language::russian, kSpace);
  word.countConverted(Language::russian, kSpace);
  EXPECT_EQ(word.ruStreak(), 2);
  word.countConverted(Language::english, kSpace);
  EXPECT_EQ(word.ruStreak(), 0);
  EXPECT_EQ(word.enStreak(), 1);
  word.countConverted(Language::english, kLineEnd);
  EXPECT_EQ(word.enStreak(), 0);
}

TEST(WordState, AWordLeftAsTypedKeepsTheStreakOfItsLanguageOnly) {
  const struct {
    const char* word;
    std::int64_t streak;
  } cases[] = {{"мир", 1}, {"world", 0}, {"12", 0}, {"миr", 0}, {"мир1", 1}};
  for (const auto& each : cases) {
    WordState word;
    word.countConverted(Language::russian, kSpace);
    type(word, each.word);
    word.leaveAsTyped(kSpace);
    EXPECT_EQ(word.ruStreak(), each.streak) << each.word;
  }
  WordState word;
  type(word, "мир");
  word.leaveAsTyped(kSpace);
  EXPECT_EQ(word.ruStreak(), 0) << "a word that was typed right starts no streak";
}

TEST(WordState, EightShortWordsWait) {
  WordState word;
  for (const auto* typed : {"a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "a9"}) {
    type(word, typed);
    word.holdBack(kSpace);
    word.clearBuffer();
  }
  EXPECT_EQ(word.pendingShorts().size(), 8U);
  EXPECT_EQ(word.pendingShorts().front(), "a2");
  erase(word, 1);
  EXPECT_TRUE(word.pendingShorts().empty());
}

TEST(WordState, AConversionThatChangesNothingKeepsWhatWaits) {
  WordState word;
  word.countConverted(Language::russian, kSpace);
  type(word, "yf");
  word.holdBack(kSpace);
  word.clearBuffer();
  word.countConverted(Language::russian, kSpace);
  type(word, "12");
  word.leaveUnchanged(kSpace);
  EXPECT_EQ(word.ruStreak(), 1);
  EXPECT_EQ(word.lastFix()->text, "12");
}

TEST(WordState, CapitalsPutRightAreNoConversion) {
  WordState word;
  word.countConverted(Language::russian, kSpace);
  type(word, "ПРивет");
  word.rememberUnshifted("Привет", kSpace);
  EXPECT_EQ(word.lastFix()->text, "Привет");
  EXPECT_EQ(word.lastAutoFix(), nullptr);
  EXPECT_EQ(word.ruStreak(), 1);
  word.rememberUnshifted("Привет", kLineEnd);
  EXPECT_EQ(word.lastFix(), nullptr);
  EXPECT_EQ(word.ruStreak(), 0);
}

TEST(WordState, ConversionByHandCountsAsAWordOfThatLanguage) {
  WordState word;
  type(word, "lf");
  word.convertBuffer("да", Language::russian);
  EXPECT_EQ(word.buffer(), "да");
  EXPECT_EQ(word.ruStreak(), 1);
  word.convertBuffer("12", std::nullopt);
  EXPECT_EQ(word.ruStreak(), 1);
  word.reset();
  fix(word, "lf", "да");
  word.convertLastFix("lf", Language::english);
  EXPECT_EQ(word.lastFix()->text, "lf");
  EXPECT_EQ(word.lastFix()->tail, " ");
  EXPECT_EQ(word.lastAutoFix(), nullptr);
  EXPECT_EQ(word.enStreak(), 1);
  EXPECT_EQ(word.ruStreak(), 0);
}

TEST(WordState, AChangeInsideAWordMakesItUnknown) {
  WordState word;
  type(word, "ab");
  word.invalidate(drop);
  EXPECT_TRUE(word.untrackableWord());
  word.invalidate(drop);
  EXPECT_TRUE(word.untrackableWord()) << "still the same word";
}

TEST(WordState, AChangeRightBehindAFixMakesItUnknown) {
  WordState word;
  fix(word, "lf", "да");
  word.invalidate(drop);
  EXPECT_FALSE(word.untrackableWord()) << "a space stands between";
  fix(word, "lf", "да");
  erase(word, 1);
  word.invalidate(drop);
  EXPECT_TRUE(word.untrackableWord());
}

TEST(WordState, AnArmedRejectionOutlivesAChangeBetweenWordsIfItMay) {
  for (const auto rejection : {drop, keepBetweenWords}) {
    WordState word;
    fix(word, "lf", "да");
    erase(word, 3);
    word.invalidate(rejection);
    EXPECT_EQ(word.pendingRejection() != nullptr, rejection == keepBetweenWords);
  }
  WordState word;
  fix(word, "lf", "да");
  erase(word, 3);
  type(word, "l");
  word.invalidate(keepBetweenWords);
  EXPECT_EQ(word.pendingRejection(), nullptr);
}

}  // namespace
}  // namespace tessarok
