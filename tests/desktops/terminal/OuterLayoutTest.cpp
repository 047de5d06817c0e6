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

  void correctorSelects(Language language) {
    own_.select(*own_.enabledLayouts()[language == Language::russian ? 1 : 0]);
  }

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
  own_.setLanguage(Language::russian);
  EXPECT_EQ(type(U"ghbdtn? Vbh;"), U"привет, Мирж");
  EXPECT_EQ(own_.language(), Language::russian);
}

TEST_F(OuterLayoutTest, TheSameKeysTypeEnglishAfterAnOwnSwitch) {
  EXPECT_EQ(type(U"руддщ"), U"руддщ");
  own_.setLanguage(Language::english);
  EXPECT_EQ(type(U"цщкдв. Ё"), U"world/ ~");
  EXPECT_EQ(own_.language(), Language::english);
}

TEST_F(OuterLayoutTest, ACyrillicLetterMeansThatThePersonHasSwitched) {
  EXPECT_EQ(type(U"abc где"), U"abc где");
  EXPECT_EQ(own_.language(), Language::russian);
  EXPECT_EQ(selections_, 1);
  EXPECT_EQ(type(U" abc"), U" abc");
  EXPECT_EQ(own_.language(), Language::english);
  EXPECT_EQ(selections_, 2);
}

TEST_F(OuterLayoutTest, APressAfterTheProgramsSwitchMeansTheOtherOne) {
  type(U"ghbdtn");
  correctorSelects(Language::russian);
  // The program is in Russian already, so the press would change nothing.
  EXPECT_EQ(type(U"руддщ"), U"hello");
  EXPECT_EQ(own_.language(), Language::english);
  // It was the person's choice, which stays until the next press.
  outer_.goHome();
  EXPECT_EQ(type(U"цщкдв"), U"world");
  EXPECT_EQ(type(U"git"), U"git");
  outer_.goHome();
  EXPECT_EQ(type(U"git"), U"git");
}

TEST_F(OuterLayoutTest, WhatTheProgramSwitchedGoesHomeWithTheLine) {
  type(U"ghbdtn");
  correctorSelects(Language::russian);
  EXPECT_EQ(type(U"vbh"), U"мир");
  outer_.goHome();
  EXPECT_EQ(type(U"git"), U"git");
}

TEST_F(OuterLayoutTest, WhatTheProgramSwitchedGoesHomeWithinTheLine) {
  type(U"ghbdtn");
  correctorSelects(Language::russian);
  outer_.goHomeWithinLine();
  EXPECT_EQ(type(U" && git "), U" && git ");
  // A press behind that is like any other.
  EXPECT_EQ(type(U"мир"), U"мир");
}

TEST_F(OuterLayoutTest, WhoSwitchesWhenItHasGoneHomeMeansToLeaveWhatItWas) {
  type(U"ghbdtn");
  correctorSelects(Language::russian);
  outer_.goHomeWithinLine();
  // The keys of "git push" under the desktop's Russian layout.
  EXPECT_EQ(type(U"пше згыр"), U"git push");
  outer_.goHome();
  EXPECT_EQ(type(U"ды"), U"ls");
}

TEST_F(OuterLayoutTest, WhatThePersonHasChosenStays) {
  type(U"a");
  outer_.toggle();
  outer_.goHome();
  EXPECT_EQ(type(U"vbh"), U"мир");
  correctorSelects(Language::english);
  EXPECT_EQ(type(U"git"), U"git");
  outer_.goHome();
  EXPECT_EQ(type(U"vbh"), U"мир");
  outer_.toggle();
  outer_.goHome();
  EXPECT_EQ(type(U"git"), U"git");
}

TEST_F(OuterLayoutTest, SignsTellNothingAboutTheLayout) {
  type(U"руддщ");
  own_.setLanguage(Language::english);
  // Of all these only the outer Russian layout decides which keys they are.
  EXPECT_EQ(type(U".,?1"), U"/?&1");
  EXPECT_EQ(own_.language(), Language::english);
}

TEST_F(OuterLayoutTest, WhatTheOuterLayoutDoesNotHaveIsTypedAsItComes) {
  own_.setLanguage(Language::russian);
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
