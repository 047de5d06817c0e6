// The layouts of the server: which there are, and changes of them while the program runs.

#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {
namespace {

/// Keys, and what the window shows after them.
struct Typed {
  /// The layout that is selected by hand before, as a number; absent for none.
  std::optional<unsigned> group;
  const char* keys;
  const char* shown;
};

/// Layouts in which the same program corrects.
struct LayoutCase {
  const char* name;
  const char* layouts;
  std::vector<Typed> typed;
  /// The layout in force at the end; absent where it does not matter.
  std::optional<unsigned> group;
};

void PrintTo(const LayoutCase& layoutCase, std::ostream* out) {
  *out << layoutCase.layouts;
}

class X11LayoutOrder : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(X11LayoutOrder, IsServed) {
  XServer server(GetParam().layouts);
  GtkEntry window(server);
  const Tessarok program(server);
  for (const auto& [group, keys, shown] : GetParam().typed) {
    if (group) server.lockGroup(*group);
    server.type(keys);
    EXPECT_TRUE(window.shows(shown)) << window.text();
  }
  if (GetParam().group) {
    EXPECT_EQ(server.group(), *GetParam().group);
  }
}

INSTANTIATE_TEST_SUITE_P(
    , X11LayoutOrder,
    ::testing::Values(LayoutCase{.name = "RussianFirst",
                                 .layouts = "ru,us",
                                 .typed = {{{}, "hello ghbdtn ", "hello привет "}},
                                 .group = 0},
                      LayoutCase{.name = "AThirdLayoutIsLeftAlone",
                                 .layouts = "us,ru,de",
                                 .typed = {{{}, "ghbdtn ", "привет "},
                                           {2, "ghbdtn ", "привет ghbdtn "},
                                           {0, "vbh ", "привет ghbdtn мир "}},
                                 .group = {}},
                      // Where the US layout has the double quote, this one has the at sign.
                      LayoutCase{.name = "BritishEnglish",
                                 .layouts = "gb,ru",
                                 .typed = {{{}, "hello\" ghbdtn ", "hello@ привет "},
                                           {{}, "hello ", "hello@ привет hello "}},
                                 .group = 0}),
    [](const auto& test) { return std::string(test.param.name); });

/// A sign that both layouts lack, on a key of its own behind a word.
struct SignCase {
  const char* name;
  char32_t sign;
  const char* before;
  const char* shown;
};

void PrintTo(const SignCase& signCase, std::ostream* out) {
  *out << signCase.shown;
}

class X11Sign : public ::testing::TestWithParam<SignCase> {};

TEST_P(X11Sign, PassesBetweenWords) {
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  server.bindKey(100, GetParam().sign);
  server.type(GetParam().before);
  server.tap(100);
  server.type(" vbh ");
  EXPECT_TRUE(window.shows(GetParam().shown)) << window.text();
}

INSTANTIATE_TEST_SUITE_P(
    , X11Sign,
    // The first ends the word: it is typed with a spare key, which the keymap then loses again.
    ::testing::Values(SignCase{"EndsAWord", U'\u20AC', "ghbdtn", "привет€ мир "},
                      SignCase{"AloneAsAnEmoji", U'\U0001F600', "ghbdtn ", "привет 😀 мир "}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(X11Layouts, OneLayoutIsSaidToBeTooFew) {
  XServer server("us");
  GtkEntry window(server);
  const Tessarok program(server, {});
  EXPECT_TRUE(program.says("there is no Russian one among us;")) << program.errors();
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("ghbdtn ")) << window.text();
  // A second one puts it to work.
  server.setLayouts("us,ru");
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("ghbdtn привет ")) << window.text();
}

TEST(X11Layouts, LayoutsChangeInTheMiddleOfTyping) {
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  std::string expected;
  for (int i = 0; i < 5; ++i) {
    server.setLayouts("ru,us");
    server.lockGroup(1);
    server.type("ghbdtn ");
    expected += "привет ";
    EXPECT_TRUE(window.shows(expected)) << window.text();
    EXPECT_EQ(server.group(), 0u);
    server.setLayouts("us,ru");
    server.lockGroup(0);
    server.type("vbh ");
    expected += "мир ";
    EXPECT_TRUE(window.shows(expected)) << window.text();
    EXPECT_EQ(server.group(), 1u);
  }
}

TEST(X11Layouts, InternationalEnglishHasItsSignsElsewhere) {
  XServer server;
  server.setLayouts("us,ru", "", "intl,");
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("ghbdtn, hello ");
  EXPECT_TRUE(window.shows("привет, hello ")) << window.text();
  server.lockGroup(1);
  server.type("don't");
  EXPECT_TRUE(window.shows("привет, hello вщтэе")) << window.text();
  // The key of this letter is a dead one in the other layout, which has the sign on the third
  // level.
  server.tapWith(64, 65);
  EXPECT_TRUE(window.shows("привет, hello don't")) << window.text();
  EXPECT_EQ(server.group(), 0u);
}

TEST(X11Layouts, NoKeyIsLostWhileTheKeymapIsSetAnew) {
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  std::thread setter([&server] {
    for (int i = 0; i < 5; ++i)
      server.setLayouts("us,ru", i % 2 == 0 ? "compose:menu" : "");
  });
  std::string expected;
  for (int i = 0; i < 150; ++i) {
    server.type("hello world ");
    expected += "hello world ";
  }
  setter.join();
  EXPECT_TRUE(window.shows(expected)) << window.text();
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows(expected + "привет ")) << window.text();
  EXPECT_TRUE(waitUntil([&] { return server.keysDown().empty(); }));
}

TEST(X11Layouts, TheKeyboardKeepsANewKeymapWhenTheProgramEnds) {
  XServer server("us,ru");
  GtkEntry window(server);
  Tessarok program(server);
  server.setLayouts("fr");
  server.type("q");
  EXPECT_TRUE(window.shows("a")) << window.text();
  // The copy to the keyboard is made a moment later.
  EXPECT_TRUE(waitUntil([&] { return server.symbolOnTheKeyboard(24) == 'a'; }));
  program.send(15);
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
  server.type("q");
  EXPECT_TRUE(window.shows("aa")) << window.text();
}

TEST(X11Layouts, AKeyThatAKeyboardGetsWhileItIsHeldGivesItsCharacter) {
  // Servers of remote desktops have no other way for a character that no key of theirs gives.
  XServer server("us,ru");
  GtkEntry window(server);
  Tessarok program(server);
  std::uint8_t key = 248;
  for (const char32_t character : U"привет") {
    if (character == 0) break;
    server.bindKeyOfTheKeyboard(key, character);
    server.tap(key--);
  }
  server.type(" ");
  EXPECT_TRUE(window.shows("привет ")) << window.text();
  // They stay, and so does what the other keys give.
  server.tap(248);
  server.type(" vbh hello ");
  EXPECT_TRUE(window.shows("привет п мир hello ")) << window.text();
  program.send(15);
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
  server.tap(247);
  EXPECT_TRUE(window.shows("привет п мир hello р")) << window.text();
}

TEST(X11Layouts, AKeyThatAKeyboardGetsAgainAndAgainGivesWhatItGaveThen) {
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  std::string expected;
  for (int i = 0; i < 5; ++i) {
    server.bindKeyOfTheKeyboard(248, i % 2 == 0 ? U'ы' : U'€');
    server.tap(248);
    expected += i % 2 == 0 ? "ы" : "€";
    EXPECT_TRUE(window.shows(expected)) << window.text();
  }
  // A new keymap of the display counts as before.
  server.setLayouts("fr");
  server.type("q");
  EXPECT_TRUE(window.shows(expected + "a")) << window.text();
  EXPECT_TRUE(waitUntil([&] { return server.symbolOnTheKeyboard(24) == 'a'; }));
}

TEST(X11Layouts, LayoutsAreKnownWhereTheServerToldKeysOneByOne) {
  // The ruble on the 8 then is a group of its own, and none but the first has a name.
  XServer server("us");
  server.setKeysOfLayouts("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет ")) << window.text() << program.errors();
  server.type("hello ");
  EXPECT_TRUE(window.shows("привет hello ")) << window.text() << program.errors();
  // Again, in another order, while the keyboards are held: somebody connected anew.
  server.setKeysOfLayouts("ru,us");
  server.lockGroup(0);
  server.type("hello ");
  EXPECT_TRUE(window.shows("привет hello hello ")) << window.text() << program.errors();
  EXPECT_EQ(server.group(), 1u);
}

TEST(X11Layouts, NamesThatAnotherKeymapLeftBehindDoNotCount) {
  XServer server("us,ru");
  server.setNamesOfLayouts("fr");
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет ")) << window.text() << program.errors();
}

TEST(X11Layouts, OfKeymapsOneBehindTheOtherTheLastCounts) {
  // What the keyboards are told of the one before must not come back from them.
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  std::string expected;
  for (int i = 0; i < 8; ++i) {
    server.setLayouts("fr");
    server.setLayouts(i % 2 == 0 ? "de" : "us");
    server.type("y");
    expected += i % 2 == 0 ? "z" : "y";
    EXPECT_TRUE(window.shows(expected)) << window.text();
    const unsigned long last = static_cast<unsigned char>(expected.back());
    EXPECT_TRUE(waitUntil([&] { return server.symbolOnTheKeyboard(29) == last; })) << i;
    server.type("y");
    expected += expected.back();
    EXPECT_TRUE(window.shows(expected)) << window.text();
  }
}

TEST(X11Layouts, TheRubleSignIsTypedWithAltGr) {
  // A sign on the third level of the Russian layout ends a word that is fixed to English.
  XServer server("us,ru", "lv3:ralt_switch");
  GtkEntry window(server);
  const Tessarok program(server);
  server.lockGroup(1);
  server.type("hello");
  server.tapWith(108, 17);
  EXPECT_TRUE(window.shows("hello₽")) << window.text();
  server.type(" ");
  EXPECT_TRUE(window.shows("hello₽ ")) << window.text();
  EXPECT_EQ(server.group(), 0u);
}

}  // namespace
}  // namespace tessarok::testing
