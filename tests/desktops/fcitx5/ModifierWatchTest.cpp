#include <gtest/gtest.h>

#include "desktops/fcitx5/ModifierWatch.h"

namespace tessarok::fcitx5 {
namespace {

using fcitx::KeyState;
using fcitx::KeyStates;

constexpr int kShiftKey = 50;

fcitx::KeyEvent shift(bool isRelease) {
  const KeyStates states = isRelease ? KeyStates(KeyState::Shift) : KeyStates();
  return {nullptr, fcitx::Key(FcitxKey_Shift_L, states, kShiftKey), isRelease};
}

TEST(ModifierWatch, KeysAreSentAtOnceWithoutModifiers) {
  ModifierWatch watch;
  EXPECT_FALSE(watch.waitFor(KeyStates(), 0));
}

TEST(ModifierWatch, KeysWaitForShiftOfALaterLetter) {
  ModifierWatch watch;
  watch.modifierKey(shift(false), 1);
  EXPECT_EQ(watch.waitFor(KeyStates(), 1), 1 + ModifierWatch::kLimit);
  watch.otherKey(KeyState::Shift);
  EXPECT_EQ(watch.waitFor(KeyStates(), 1.2), 1 + ModifierWatch::kLimit);
  watch.modifierKey(shift(true), 1.3);
  // The state follows the key.
  const auto until = watch.waitFor(KeyStates(), 1.3);
  ASSERT_TRUE(until);
  EXPECT_LT(*until, 1.31);
  EXPECT_FALSE(watch.waitFor(KeyStates(), *until));
}

TEST(ModifierWatch, ALetterTellsTheState) {
  ModifierWatch watch;
  watch.modifierKey(shift(false), 1);
  watch.modifierKey(shift(true), 1);
  watch.otherKey(KeyStates());
  EXPECT_FALSE(watch.waitFor(KeyStates(), 1));
}

TEST(ModifierWatch, KeysDoNotWaitForEver) {
  ModifierWatch watch;
  watch.modifierKey(shift(false), 1);
  ASSERT_TRUE(watch.waitFor(KeyStates(), 1));
  EXPECT_FALSE(watch.waitFor(KeyStates(), 1 + ModifierWatch::kLimit));
  // The next one waits anew.
  EXPECT_EQ(watch.waitFor(KeyStates(), 5), 5 + ModifierWatch::kLimit);
}

TEST(ModifierWatch, ShiftThatBelongsToTheKeyIsNotWaitedFor) {
  ModifierWatch watch;
  watch.otherKey(KeyState::Shift);
  EXPECT_FALSE(watch.waitFor(KeyState::Shift, 1));
}

TEST(ModifierWatch, LocksAreNotWaitedFor) {
  ModifierWatch watch;
  watch.otherKey(KeyStates{KeyState::CapsLock, KeyState::NumLock});
  EXPECT_FALSE(watch.waitFor(KeyStates(), 1));
}

TEST(ModifierWatch, AnotherFieldBeginsWithoutModifiers) {
  ModifierWatch watch;
  watch.otherKey(KeyState::Ctrl);
  watch.reset();
  EXPECT_FALSE(watch.waitFor(KeyStates(), 1));
}

}  // namespace
}  // namespace tessarok::fcitx5
