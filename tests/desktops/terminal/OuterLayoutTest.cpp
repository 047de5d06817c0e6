#include <gtest/gtest.h>
#include <string>

#include "desktops/terminal/OuterLayout.h"

namespace tessarok::terminal {
namespace {

class OuterLayoutTest : public ::testing::Test {
 protected:
  OuterLayoutTest() {
    own_.onSelected = [this] { ++selections_; };
  }

  /// What the program gets for characters that come from the desktop.
  std::u32string type(std::u32string_view characters) {
    std::u32string typed;
    for (const auto character : characters) {
      outer_.note(character);
      typed += outer_.keyFor(character).character;
    }
    return typed;
  }

  void correctorSelects(bool russian) { own_.select(*own_.enabledLayouts()[russian ? 1 : 0]); }

  TerminalInputSources own_;
  OuterLayout outer_{own_};
  int selections_ = 0;
};

TEST_F(OuterLayoutTest, TypesAsItComesWhileBothAgree) {
  EXPECT_EQ(type(U"Hello, world #1"), U"Hello, world #1");
  EXPECT_EQ(selections_, 0);
}

TEST_F(OuterLayoutTest, TheSameKeysTypeRussianAfterAnOwnSwitch) {
  EXPECT_EQ(type(U"a"), U"a");
  own_.setRussian(true);
  EXPECT_EQ(type(U"ghbdtn? Vbh;"), U"привет, Мирж");
  EXPECT_TRUE(own_.isRussian());
}

TEST_F(OuterLayoutTest, TheSameKeysTypeEnglishAfterAnOwnSwitch) {
  EXPECT_EQ(type(U"руддщ"), U"руддщ");
  own_.setRussian(false);
  EXPECT_EQ(type(U"цщкдв. Ё"), U"world/ ~");
  EXPECT_FALSE(own_.isRussian());
}

TEST_F(OuterLayoutTest, ACyrillicLetterMeansThatThePersonHasSwitched) {
  EXPECT_EQ(type(U"abc где"), U"abc где");
  EXPECT_TRUE(own_.isRussian());
  EXPECT_EQ(selections_, 1);
  EXPECT_EQ(type(U" abc"), U" abc");
  EXPECT_FALSE(own_.isRussian());
  EXPECT_EQ(selections_, 2);
}

TEST_F(OuterLayoutTest, APressAfterTheProgramsSwitchMeansTheOtherOne) {
  type(U"ghbdtn");
  correctorSelects(true);
  // The program is in Russian already, so the press would change nothing.
  EXPECT_EQ(type(U"руддщ"), U"hello");
  EXPECT_FALSE(own_.isRussian());
  // It was the person's choice, which stays until the next press.
  outer_.goHome();
  EXPECT_EQ(type(U"цщкдв"), U"world");
  EXPECT_EQ(type(U"git"), U"git");
  outer_.goHome();
  EXPECT_EQ(type(U"git"), U"git");
}

TEST_F(OuterLayoutTest, WhatTheProgramSwitchedGoesHomeWithTheLine) {
  type(U"ghbdtn");
  correctorSelects(true);
  EXPECT_EQ(type(U"vbh"), U"мир");
  outer_.goHome();
  EXPECT_EQ(type(U"git"), U"git");
}

TEST_F(OuterLayoutTest, WhatThePersonHasChosenStays) {
  type(U"a");
  outer_.toggle();
  outer_.goHome();
  EXPECT_EQ(type(U"vbh"), U"мир");
  correctorSelects(false);
  EXPECT_EQ(type(U"git"), U"git");
  outer_.goHome();
  EXPECT_EQ(type(U"vbh"), U"мир");
  outer_.toggle();
  outer_.goHome();
  EXPECT_EQ(type(U"git"), U"git");
}

TEST_F(OuterLayoutTest, SignsTellNothingAboutTheLayout) {
  type(U"руддщ");
  own_.setRussian(false);
  // Of all these only the outer Russian layout decides which keys they are.
  EXPECT_EQ(type(U".,?1"), U"/?&1");
  EXPECT_FALSE(own_.isRussian());
}

TEST_F(OuterLayoutTest, WhatTheOuterLayoutDoesNotHaveIsTypedAsItComes) {
  own_.setRussian(true);
  EXPECT_EQ(type(U"№€é"), U"№€é");
  EXPECT_EQ(outer_.keyFor(U'№').code, 20);
  EXPECT_EQ(outer_.keyFor(U'€').code, OuterLayout::kNoKey);
}

TEST_F(OuterLayoutTest, KnowsTheKeyAndItsShift) {
  const auto key = outer_.keyFor(U'~');
  EXPECT_EQ(key.code, 50);
  EXPECT_TRUE(key.shift);
}

}  // namespace
}  // namespace tessarok::terminal
