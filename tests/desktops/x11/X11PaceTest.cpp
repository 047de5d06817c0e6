// Applications that cannot take keys as fast as a program can send them.

#include <gtest/gtest.h>

#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {
namespace {

TEST(X11Pace, AnApplicationThatLosesKeysBehindABackspaceIsWaitedFor) {
  XServer server;
  const BusyEntry window(server, BusyEntry::Kind::busy);
  const Tessarok program(server);
  server.type("ghbdtn vbh cegthvfhrtn ");
  EXPECT_TRUE(window.shows("привет мир супермаркет ")) << window.text() << program.errors();
}

/// As in games: the answers to a long word's Backspaces, one a frame, do not come in the time that
/// there is for them, and the rest is sent at once.
TEST(X11Pace, AWindowThatDropsRepetitionsGetsEveryBackspace) {
  XServer server;
  const BusyEntry window(server, BusyEntry::Kind::frames);
  const Tessarok program(server);
  server.typeByHand("plhfdcndeqnt ");
  EXPECT_TRUE(window.shows("здравствуйте ")) << window.text() << program.errors();
}

TEST(X11Pace, AWindowThatDropsRepetitionsGetsLettersThatAreTwoInARow) {
  XServer server;
  const BusyEntry window(server, BusyEntry::Kind::frames);
  const Tessarok program(server);
  server.typeByHand("ghjuhfvvf ");
  EXPECT_TRUE(window.shows("программа ")) << window.text() << program.errors();
}

TEST(X11Pace, AWindowThatNeverAnswersGetsItsKeysAllTheSame) {
  XServer server;
  const BusyEntry window(server, BusyEntry::Kind::silent);
  const Tessarok program(server);
  std::string expected;
  // More often than such a window is waited for.
  for (int i = 0; i < 5; ++i) {
    server.lockGroup(0);
    server.type("ghbdtn ");
    expected += "привет ";
    ASSERT_TRUE(window.shows(expected)) << window.text() << program.errors();
  }
}

}  // namespace
}  // namespace tessarok::testing
