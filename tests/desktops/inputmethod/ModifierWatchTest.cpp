#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "desktops/inputmethod/ModifierWatch.h"

namespace tessarok::inputmethod {
namespace {

constexpr int kShiftKey = 50;

KeyEvent shift(bool isRelease) {
  KeyEvent event;
  event.key = {
      .symbol = XKB_KEY_Shift_L, .states = isRelease ? keyStates::shift : 0, .code = kShiftKey};
  event.isRelease = isRelease;
  return event;
}

TEST(ModifierWatch, KeysAreSentAtOnceWithoutModifiers) {
  ModifierWatch watch;
  EXPECT_FALSE(watch.waitFor(0, 0));
}

TEST(ModifierWatch, KeysWaitForShiftOfALaterLetter) {
  ModifierWatch watch;
  watch.modifierKey(shift(false), 1);
  EXPECT_EQ(watch.waitFor(0, 1), 1 + ModifierWatch::kLimit);
  watch.otherKey(keyStates::shift);
  EXPECT_EQ(watch.waitFor(0, 1.2), 1 + ModifierWatch::kLimit);
  watch.modifierKey(shift(true), 1.3);
  // The state follows the key.
  const auto until = watch.waitFor(0, 1.3);
  ASSERT_TRUE(until);
  EXPECT_LT(*until, 1.31);
  EXPECT_FALSE(watch.waitFor(0, *until));
}

TEST(ModifierWatch, ALetterTellsTheState) {
  ModifierWatch watch;
  watch.modifierKey(shift(false), 1);
  watch.modifierKey(shift(true), 1);
  watch.otherKey(0);
  EXPECT_FALSE(watch.waitFor(0, 1));
}

TEST(ModifierWatch, KeysDoNotWaitForEver) {
  ModifierWatch watch;
  watch.modifierKey(shift(false), 1);
  ASSERT_TRUE(watch.waitFor(0, 1));
  EXPECT_FALSE(watch.waitFor(0, 1 + ModifierWatch::kLimit));
  // The next one waits anew.
  EXPECT_EQ(watch.waitFor(0, 5), 5 + ModifierWatch::kLimit);
}

TEST(ModifierWatch, ShiftThatBelongsToTheKeyIsNotWaitedFor) {
  ModifierWatch watch;
  watch.otherKey(keyStates::shift);
  EXPECT_FALSE(watch.waitFor(keyStates::shift, 1));
}

TEST(ModifierWatch, LocksAreNotWaitedFor) {
  ModifierWatch watch;
  watch.otherKey(keyStates::capsLock | keyStates::numLock);
  EXPECT_FALSE(watch.waitFor(0, 1));
}

TEST(ModifierWatch, AnotherFieldBeginsWithoutModifiers) {
  ModifierWatch watch;
  watch.otherKey(keyStates::control);
  watch.reset();
  EXPECT_FALSE(watch.waitFor(0, 1));
}

}  // namespace
}  // namespace tessarok::inputmethod
