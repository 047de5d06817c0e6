// The layouts of the server: which there are, and changes of them while the program runs.

#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "x11/Applications.h"
#include "x11/Patience.h"
#include "x11/Tessarok.h"
#include "x11/XServer.h"

namespace tessarok::testing {
namespace {

TEST(X11Layouts, RussianFirst) {
  XServer server("ru,us");
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("hello ghbdtn ");
  EXPECT_TRUE(window.shows("hello привет ")) << window.text();
  EXPECT_EQ(server.group(), 0u);
}

TEST(X11Layouts, AThirdLayoutIsLeftAlone) {
  XServer server("us,ru,de");
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет ")) << window.text();
  server.lockGroup(2);
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет ghbdtn ")) << window.text();
  server.lockGroup(0);
  server.type("vbh ");
  EXPECT_TRUE(window.shows("привет ghbdtn мир ")) << window.text();
}

TEST(X11Layouts, OneLayoutIsSaidToBeTooFew) {
  XServer server("us");
  GtkEntry window(server);
  const Tessarok program(server, {});
  EXPECT_TRUE(program.says("there is no Russian one among com.apple.keylayout.US"))
      << program.errors();
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

TEST(X11Layouts, BritishEnglish) {
  XServer server("gb,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  // Where the US layout has the double quote, this one has the at sign.
  server.type("hello\" ghbdtn ");
  EXPECT_TRUE(window.shows("hello@ привет ")) << window.text();
  server.type("hello ");
  EXPECT_TRUE(window.shows("hello@ привет hello ")) << window.text();
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

TEST(X11Layouts, ASignOfNoLayoutIsTypedWithASpareKey) {
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  // A key that both layouts lack ends the word, and then the keymap loses it again.
  server.bindKey(100, U'\u20AC');
  server.type("ghbdtn");
  server.tap(100);
  server.type(" vbh ");
  EXPECT_TRUE(window.shows("привет€ мир ")) << window.text();
}

TEST(X11Layouts, AnEmojiPassesAndEndsTheWord) {
  XServer server("us,ru");
  GtkEntry window(server);
  const Tessarok program(server);
  server.bindKey(100, U'\U0001F600');
  server.type("ghbdtn ");
  server.tap(100);
  server.type(" vbh ");
  EXPECT_TRUE(window.shows("привет 😀 мир ")) << window.text();
}

}  // namespace
}  // namespace tessarok::testing
