#include <gtest/gtest.h>

#include "desktops/terminal/KeyboardModes.h"

namespace tessarok::terminal {
namespace {

using Screen = KeyboardModes::Screen;

TEST(KeyboardModes, NothingIsUndoneThatWasNotDone) {
  KeyboardModes modes;
  EXPECT_EQ(modes.undoing(Screen::main), "");
  modes.note(">1", 'u', Screen::main);
  modes.note("<", 'u', Screen::main);
  modes.note(">4;2", 'm', Screen::main);
  modes.note(">4", 'm', Screen::main);
  // Questions, colours, and the place of the cursor.
  modes.note("?", 'u', Screen::main);
  modes.note("4;2", 'm', Screen::main);
  modes.note("", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "");
}

TEST(KeyboardModes, EveryStepIsUndone) {
  KeyboardModes modes;
  modes.note(">1", 'u', Screen::main);
  modes.note(">", 'u', Screen::main);
  modes.note(">5", 'u', Screen::main);
  modes.note("<2", 'u', Screen::main);
  modes.note(">31", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "\x1b[<2u");
  modes.note(">4;1", 'm', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "\x1b[<2u\x1b[>4m");
  modes.reset();
  EXPECT_EQ(modes.undoing(Screen::main), "");
}

TEST(KeyboardModes, WhatIsChangedInPlaceIsChangedBack) {
  KeyboardModes modes;
  modes.note("=5", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "\x1b[=0u");
  EXPECT_EQ(modes.undoing(Screen::alternate), "");
  modes.note("=0", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "");
  modes.note("=1;2", 'u', Screen::main);
  // The other reports may still be on.
  modes.note("=1;3", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "\x1b[=0u");
  modes.note("=;1", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "");
  modes.note("=1;3", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "");
}

TEST(KeyboardModes, WhatIsChangedOnTheStackGoesWithIt) {
  KeyboardModes modes;
  modes.note(">1", 'u', Screen::main);
  modes.note("=7", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "\x1b[<1u");
  modes.note("<", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "");
}

TEST(KeyboardModes, EveryScreenHasItsOwn) {
  KeyboardModes modes;
  modes.note(">1", 'u', Screen::alternate);
  EXPECT_EQ(modes.undoing(Screen::main), "");
  EXPECT_EQ(modes.undoing(Screen::alternate), "\x1b[<1u");
}

TEST(KeyboardModes, NobodyTakesAwayWhatAnotherHasPut) {
  KeyboardModes modes;
  modes.note("<7", 'u', Screen::main);
  modes.note("<-3", 'u', Screen::main);
  EXPECT_EQ(modes.undoing(Screen::main), "");
}

}  // namespace
}  // namespace tessarok::terminal
