#include <gtest/gtest.h>

#include "desktops/inputmethod/ClientField.h"

namespace tessarok::inputmethod {
namespace {

using Way = ClientField::Way;

ClientField::Sending text(double now) {
  return {.way = Way::text, .isOwn = true, .now = now};
}

ClientField::Sending key(double now) {
  return {.way = Way::key, .isOwn = false, .now = now};
}

/// A field whose program has reported what was typed, each time so many seconds later.
ClientField reportingField(double delay) {
  ClientField field;
  static_cast<void>(field.reported("", false, 0));
  field.typed("a", text(1));
  static_cast<void>(field.reported("a", false, 1 + delay));
  return field;
}

TEST(ClientField, HasNothingToWaitForAtFirst) {
  ClientField field;
  EXPECT_FALSE(field.unsettledUntil(0));
}

TEST(ClientField, ProgramsThatReportNothingGetAShortTime) {
  ClientField field;
  field.erased(1, key(10));
  EXPECT_DOUBLE_EQ(*field.unsettledUntil(10), 10 + ClientField::kSettle);
  EXPECT_FALSE(field.unsettledUntil(10.02));
  // And it stays so.
  EXPECT_FALSE(field.unsettledUntil(10.001));
}

TEST(ClientField, ProgramsThatReportAlwaysNothingGetAShortTimeInTheEnd) {
  ClientField field;
  EXPECT_TRUE(field.reported("", false, 0));
  field.typed("a", text(1));
  EXPECT_DOUBLE_EQ(*field.unsettledUntil(1), 1 + ClientField::kFirstSettle);
  EXPECT_TRUE(field.reported("", false, 1.01));
  EXPECT_FALSE(field.unsettledUntil(1.05));
  field.typed("b", text(2));
  EXPECT_DOUBLE_EQ(*field.unsettledUntil(2), 2 + ClientField::kSettle);
}

TEST(ClientField, IsSettledByTheReport) {
  ClientField field;
  EXPECT_TRUE(field.reported("wor", false, 0));
  field.typed("d", key(1));
  EXPECT_EQ(field.lastWay(), Way::key);
  EXPECT_FALSE(field.isLastOwn());
  EXPECT_TRUE(field.unsettledUntil(1));
  EXPECT_FALSE(field.showsTyped());
  EXPECT_TRUE(field.reported("word", false, 1.001));
  EXPECT_FALSE(field.unsettledUntil(1.001));
  EXPECT_TRUE(field.showsTyped());
}

TEST(ClientField, AReportFromBeforeABackspaceDoesNotSettleIt) {
  ClientField field = reportingField(0.001);
  field.typed("q", key(2));
  field.erased(1, key(2));
  // "a" is also what was there before both.
  EXPECT_TRUE(field.reported("a", false, 2.001));
  EXPECT_TRUE(field.unsettledUntil(2.001));
  EXPECT_FALSE(field.showsTyped());
  EXPECT_TRUE(field.reported("aq", false, 2.002));
  EXPECT_TRUE(field.unsettledUntil(2.002));
  EXPECT_TRUE(field.reported("a", false, 2.003));
  EXPECT_FALSE(field.unsettledUntil(2.003));
}

TEST(ClientField, AKeyThatIsNeverReportedGetsLessTimeThereafter) {
  ClientField field = reportingField(0.001);
  for (double now = 10; now < 12; ++now) {
    field.keyOfUnknownEffect(key(now));
    EXPECT_DOUBLE_EQ(*field.unsettledUntil(now), now + ClientField::kUnknownPatience);
    EXPECT_FALSE(field.unsettledUntil(now + 0.9));
  }
  field.keyOfUnknownEffect(key(12));
  EXPECT_DOUBLE_EQ(*field.unsettledUntil(12), 12 + ClientField::kLeastPatience);
}

TEST(ClientField, ASlowProgramGetsMoreTime) {
  ClientField field = reportingField(0.03);
  for (double now = 10; now < 12; ++now) {
    field.keyOfUnknownEffect(key(now));
    static_cast<void>(field.unsettledUntil(now + 0.9));
  }
  field.keyOfUnknownEffect(key(12));
  EXPECT_NEAR(*field.unsettledUntil(12), 12.6, 1e-6);
}

TEST(ClientField, AVerySlowProgramDoesNotGetForEver) {
  ClientField field = reportingField(5);
  for (double now = 10; now < 12; ++now) {
    field.keyOfUnknownEffect(key(now));
    static_cast<void>(field.unsettledUntil(now + 0.9));
  }
  field.keyOfUnknownEffect(key(12));
  EXPECT_DOUBLE_EQ(*field.unsettledUntil(12), 12 + ClientField::kMostPatience);
}

TEST(ClientField, SeesThatACorrectionTookMoreThanItShould) {
  ClientField field;
  static_cast<void>(field.reported("да привет руддщ ", false, 0));
  field.correctionBegins(6);
  field.erased(6, text(1));
  field.typed("hello ", text(1));
  static_cast<void>(field.reported("да пр", false, 1.1));
  EXPECT_FALSE(field.isDamaged());
  static_cast<void>(field.reported("да прhello ", false, 1.1));
  field.typed("wo", text(1.2));
  static_cast<void>(field.reported("да прhello w", false, 1.3));
  // The same again is no news.
  static_cast<void>(field.reported("да прhello w", false, 1.3));
  EXPECT_FALSE(field.isDamaged());
  static_cast<void>(field.reported("да прhello wo", false, 1.4));
  EXPECT_TRUE(field.isDamaged());
  field.reset();
  EXPECT_FALSE(field.isDamaged());
}

TEST(ClientField, ACorrectionThatIsSeenInPartsIsWhole) {
  ClientField field;
  static_cast<void>(field.reported("я z ", false, 0));
  field.correctionBegins(2);
  field.erased(1, {.way = Way::key, .isOwn = true, .now = 1});
  field.erased(1, {.way = Way::key, .isOwn = true, .now = 1});
  field.typed("я ", text(1));
  field.typed("а", text(1));
  for (const auto* report : {"я z ", "я z", "я ", "я я ", "я я а"}) {
    static_cast<void>(field.reported(report, false, 1.1));
    EXPECT_FALSE(field.isDamaged()) << report;
  }
}

TEST(ClientField, AClickBehindACorrectionIsNoDamage) {
  ClientField field;
  static_cast<void>(field.reported("one two ghbdtn ", false, 0));
  field.correctionBegins(7);
  field.erased(7, text(1));
  field.typed("привет ", text(1));
  static_cast<void>(field.reported("one ", false, 3));
  EXPECT_FALSE(field.isDamaged());
}

TEST(ClientField, TellsAnotherPlace) {
  ClientField field = reportingField(0.001);
  EXPECT_FALSE(field.reported("elsewhere", false, 5));
  EXPECT_TRUE(field.reported("elsewhere", false, 5));
}

TEST(ClientField, WhatDoesNotFitWhileSomethingIsOnItsWayIsNoOtherPlace) {
  ClientField field = reportingField(0.001);
  field.typed("b", key(2));
  EXPECT_TRUE(field.reported("completed", false, 2.001));
  // But so long afterwards it is.
  EXPECT_FALSE(field.unsettledUntil(3.5));
  EXPECT_FALSE(field.reported("elsewhere", false, 3.5));
  EXPECT_TRUE(field.showsTyped());
}

TEST(ClientField, ASelectionIsNoTextToDelete) {
  ClientField field = reportingField(0.001);
  EXPECT_FALSE(field.reported("a", true, 2));
  EXPECT_FALSE(field.showsTyped());
  field.typed("b", key(3));
  EXPECT_TRUE(field.reported("ab", false, 3.001));
  EXPECT_TRUE(field.showsTyped());
}

TEST(ClientField, ForgetsAnotherPlaceButNotTheProgram) {
  ClientField field = reportingField(0.001);
  field.forgetText();
  EXPECT_FALSE(field.last(1));
  field.typed("b", text(2));
  EXPECT_DOUBLE_EQ(*field.unsettledUntil(2), 2 + ClientField::kPatience);
  field.reset();
  EXPECT_FALSE(field.unsettledUntil(2));
}

TEST(ClientField, KeepsWhatWasTypedWhenReportsEnd) {
  ClientField field = reportingField(0.001);
  field.typed("b", key(2));
  field.reportedNothing();
  EXPECT_EQ(field.last(2), "ab");
  EXPECT_FALSE(field.showsTyped());
}

}  // namespace
}  // namespace tessarok::inputmethod
