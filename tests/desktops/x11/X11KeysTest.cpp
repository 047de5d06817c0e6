// Keys on their way through the program: repetitions, hot keys of others, settings.

#include <gtest/gtest.h>
#include <string>

#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

// Last, because of the plain words that Xlib defines as macros.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace tessarok::testing {
namespace {

/// Events that another program got, of one kind.
int take(Display* display, int type) {
  int count = 0;
  XSync(display, False);
  for (XEvent event; XPending(display) > 0;) {
    XNextEvent(display, &event);
    if (event.type == type) ++count;
  }
  return count;
}

TEST(X11Keys, AHeldKeyRepeats) {
  XServer server;
  GtkEntry window(server);
  const Tessarok program(server);
  server.key(kA, true);
  EXPECT_TRUE(waitUntil([&] { return window.text().size() >= 6; })) << window.text();
  server.key(kA, false);
  server.sync();
  EXPECT_EQ(window.text().find_first_not_of('a'), std::string::npos) << window.text();
  EXPECT_TRUE(waitUntil([&] { return server.keysDown().empty(); }));
}

TEST(X11Keys, AHeldBackspaceShortensTheWordForTheProgramToo) {
  XServer server;
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("ghbdtnxxxxxxxxxxxx");
  ASSERT_TRUE(window.shows("ghbdtnxxxxxxxxxxxx")) << window.text();
  // Held until some letters are gone, and then pressed for the rest, one by one.
  server.key(kBackspace, true);
  EXPECT_TRUE(waitUntil([&] { return window.text().size() <= 12; })) << window.text();
  server.key(kBackspace, false);
  server.sync();
  server.type("q");
  EXPECT_TRUE(waitUntil([&] { return window.text().ends_with("q"); }));
  // On a busy machine nothing may be left but the last letter.
  do {
    const auto shorter = window.text().substr(0, window.text().size() - 1);
    server.type("\b");
    ASSERT_TRUE(window.shows(shorter)) << window.text();
  } while (window.text().size() > 6);
  server.type(std::string_view("ghbdtn ").substr(window.text().size()));
  EXPECT_TRUE(window.shows("привет ")) << window.text();
}

TEST(X11Keys, HotKeysOfOtherProgramsWork) {
  XServer server;
  GtkEntry window(server);
  const Tessarok program(server);
  auto* other = XOpenDisplay(server.name().c_str());
  ASSERT_NE(other, nullptr);
  XGrabKey(other, 44, ControlMask, DefaultRootWindow(other), False, GrabModeAsync, GrabModeAsync);
  XSync(other, False);
  server.type("ab");
  server.tapWith(kControl, 44);
  server.type("cd");
  EXPECT_TRUE(window.shows("abcd")) << window.text();
  EXPECT_EQ(take(other, KeyPress), 1);
  XCloseDisplay(other);
}

TEST(X11Keys, NothingIsCorrectedWhileAnotherProgramHasTakenTheKeyboard) {
  XServer server;
  GtkEntry window(server);
  const Tessarok program(server);
  server.type("vbh ");
  EXPECT_TRUE(window.shows("мир ")) << window.text();
  server.lockGroup(0);
  // As a screen locker does.
  auto* locker = XOpenDisplay(server.name().c_str());
  ASSERT_NE(locker, nullptr);
  const auto lock = XCreateSimpleWindow(locker, DefaultRootWindow(locker), 0, 0, 9, 9, 0, 0, 0);
  XSelectInput(locker, lock, KeyPressMask);
  XMapWindow(locker, lock);
  XSync(locker, False);
  ASSERT_EQ(XGrabKeyboard(locker, lock, True, GrabModeAsync, GrabModeAsync, CurrentTime),
            GrabSuccess);
  XSync(locker, False);
  server.type("ghbdtn ");
  std::string got;
  EXPECT_TRUE(waitUntil([&] {
    XSync(locker, False);
    for (XEvent event; XPending(locker) > 0;) {
      XNextEvent(locker, &event);
      char text[8];
      KeySym symbol = 0;
      if (event.type != KeyPress) continue;
      const int size = XLookupString(&event.xkey, text, sizeof text, &symbol, nullptr);
      got.append(text, static_cast<std::size_t>(size));
    }
    return got.size() >= 7;
  }));
  EXPECT_EQ(got, "ghbdtn ");
  XUngrabKeyboard(locker, CurrentTime);
  XSync(locker, False);
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("мир привет ")) << window.text();
  XCloseDisplay(locker);
}

TEST(X11Keys, AltSpaceCanBeLeftToTheWindowManager) {
  XServer server;
  GtkEntry window(server);
  Tessarok program(server, {.settings = R"({"manualKey": "pause"})", .home = {}});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  auto* manager = XOpenDisplay(server.name().c_str());
  ASSERT_NE(manager, nullptr);
  XGrabKey(manager, kSpace, Mod1Mask, DefaultRootWindow(manager), False, GrabModeAsync,
           GrabModeAsync);
  XSync(manager, False);
  server.type("ghbdtn ");
  server.tapWith(kAlt, kSpace);
  EXPECT_TRUE(window.shows("привет ")) << window.text();
  EXPECT_TRUE(waitUntil([&] { return take(manager, KeyPress) == 1; }));
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет привет ")) << window.text();
  server.lockGroup(0);
  server.type("vbh ");
  server.tap(kPause);
  EXPECT_TRUE(window.shows("привет привет vbh ")) << window.text();
  XCloseDisplay(manager);
}

TEST(X11Keys, ThePauseKeyCanBeLeftAlone) {
  XServer server;
  GtkEntry window(server);
  Tessarok program(server, {.settings = R"({"manualKey": "alt-space"})", .home = {}});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  server.type("ghbdtn ");
  server.tap(kPause);
  server.type("\n");
  EXPECT_TRUE(window.shows("привет \n")) << window.text();
}

TEST(X11Keys, AnUnknownManualKeyIsReported) {
  XServer server;
  Tessarok program(server, {.settings = R"({"manualKey": "F13"})", .home = {}});
  EXPECT_TRUE(program.says("\"manualKey\" is \"F13\"")) << program.errors();
}

TEST(X11Keys, TheGraveAccentPausesAndYoDoesNot) {
  XServer server;
  GtkEntry window(server);
  const Tessarok program(server);
  server.lockGroup(1);
  server.tap(kGrave);
  server.type(" ");
  EXPECT_TRUE(window.shows("ё ")) << window.text();
  server.lockGroup(0);
  server.type("ghbdtn ");
  EXPECT_TRUE(window.shows("ё привет ")) << window.text();
  server.lockGroup(0);
  server.tap(kGrave);
  server.type(" vbh ");
  EXPECT_TRUE(window.shows("ё привет ` vbh ")) << window.text();
}

TEST(X11Keys, YoPausesTooWhereThePersonSaysSo) {
  XServer server;
  GtkEntry window(server);
  Tessarok program(server, {.settings = R"({"pauseKey": "grave"})", .home = {}});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  server.lockGroup(1);
  server.tap(kGrave);
  server.type(" ");
  EXPECT_TRUE(window.shows("ё ")) << window.text();
  server.lockGroup(0);
  server.type("vbh ");
  EXPECT_TRUE(window.shows("ё vbh ")) << window.text();
}

TEST(X11Keys, AWordWithYoIsPutRightWhereItsKeyDoesNotPause) {
  for (const auto* setting : {R"({"pauseKey": "none"})", R"({"pauseKey": "section"})"}) {
    XServer server;
    GtkEntry window(server);
    Tessarok program(server, {.settings = setting, .home = {}});
    ASSERT_TRUE(program.says("correcting")) << program.errors();
    server.type("cfvjk`n ");
    EXPECT_TRUE(window.shows("самолёт ")) << setting << window.text();
  }
}

TEST(X11Keys, TheKeyBesideShiftPausesUnlessNoKeyDoes) {
  for (const auto* setting : {"english-only", "section", "none"}) {
    XServer server;
    GtkEntry window(server);
    Tessarok program(
        server, {.settings = R"({"pauseKey": ")" + std::string(setting) + R"("})", .home = {}});
    ASSERT_TRUE(program.says("correcting")) << program.errors();
    server.tap(kBesideShift);
    server.type(" vbh ");
    const bool pauses = std::string(setting) != "none";
    EXPECT_TRUE(window.shows(pauses ? "< vbh " : "< мир ")) << setting << window.text();
  }
}

TEST(X11Keys, AnUnknownPauseKeyIsReported) {
  XServer server;
  Tessarok program(server, {.settings = R"({"pauseKey": "F13"})", .home = {}});
  EXPECT_TRUE(program.says("\"pauseKey\" is \"F13\"")) << program.errors();
}

TEST(X11Keys, AnArrowMakesTheWordUnknown) {
  XServer server;
  GtkEntry window(server);
  Tessarok program(server);
  server.type("ghbdtn");
  server.tap(kLeftArrow);
  server.type(" ");
  EXPECT_TRUE(window.shows("ghbdt n")) << window.text();
}

TEST(X11Keys, AWordDoesNotGoOnInAnotherWindow) {
  XServer server;
  GtkEntry one(server);
  GtkEntry other(server);
  const Tessarok program(server);
  one.focus();
  server.type("ghb");
  EXPECT_TRUE(one.shows("ghb")) << one.text();
  other.focus();
  server.type("dtn ");
  EXPECT_TRUE(other.shows("dtn ")) << other.text();
  server.type("ghbdtn ");
  EXPECT_TRUE(other.shows("dtn привет ")) << other.text();
  EXPECT_EQ(one.text(), "ghb");
}

}  // namespace
}  // namespace tessarok::testing
