// Several keyboards, on the server that people run: keys come from devices of the server's own,
// through its queue.

#include <csignal>
#include <gtest/gtest.h>
#include <string>

#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {
namespace {

constexpr std::size_t kLeft = 0;
constexpr std::size_t kRight = 1;

class X11Devices : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(waitUntil([this] { return isHeld(kLeft) && isHeld(kRight); }));
  }
  bool isHeld(std::size_t keyboard) {
    server_.takeKeyboard(keyboard);
    return server_.isKeyboardHeld();
  }
  void type(std::size_t keyboard, std::string_view text) {
    server_.takeKeyboard(keyboard);
    server_.type(text);
  }
  void key(std::size_t keyboard, std::uint8_t key, bool isDown) {
    server_.takeKeyboard(keyboard);
    server_.key(key, isDown);
    server_.sync();
  }
  void expect(const std::string& text) {
    EXPECT_TRUE(window_.shows(text)) << window_.text() << "\n" << program_.errors();
  }
  void expectNoKeyDown() {
    EXPECT_TRUE(waitUntil([this] { return server_.keysDown().empty(); }));
  }

  XServer server_{"us,ru", "", XServer::Hardware::twoKeyboards};
  GtkEntry window_{server_};
  Tessarok program_{server_};
};

TEST_F(X11Devices, KeysFromTheDriverKeepTheirOrder) {
  std::string expected;
  server_.takeKeyboard(kLeft);
  for (int i = 0; i < 60; ++i) {
    server_.type("ghbdtn hello world vbh ");
    expected += "привет hello world мир ";
  }
  expect(expected);
}

TEST_F(X11Devices, OneWordMayComeFromBoth) {
  type(kLeft, "ghb");
  type(kRight, "dtn");
  type(kLeft, " ");
  expect("привет ");
  EXPECT_EQ(server_.group(), 1u);
}

TEST_F(X11Devices, ShiftOfOneHoldsForTheOther) {
  key(kLeft, kShift, true);
  type(kRight, "a");
  key(kLeft, kShift, false);
  type(kRight, "a ");
  expect("Aa ");
  expectNoKeyDown();
}

TEST_F(X11Devices, TheSameKeyOfBothIsTypedTwiceAndComesUp) {
  key(kLeft, kA, true);
  key(kRight, kA, true);
  key(kLeft, kA, false);
  key(kRight, kA, false);
  expect("aa");
  expectNoKeyDown();
}

TEST_F(X11Devices, OneThatGoesTakesItsKeysAlongAndLeavesTheOther) {
  key(kRight, kA, true);
  expect("a");
  server_.setKeyboardEnabled(false);
  expectNoKeyDown();
  type(kLeft, "\bghbdtn ");
  expect("привет ");
  server_.takeKeyboard(kRight);
  server_.setKeyboardEnabled(true);
  EXPECT_TRUE(waitUntil([this] { return isHeld(kRight); }));
  // On the device the key is up again, as it is after a plug was pulled.
  type(kRight, "vbh ");
  expect("привет мир ");
  expectNoKeyDown();
}

TEST_F(X11Devices, BothAreFreeWhenTheProgramIsKilled) {
  key(kLeft, kShift, true);
  key(kRight, kA, true);
  expect("A");
  program_.send(SIGKILL);
  EXPECT_TRUE(waitUntil([this] { return !isHeld(kLeft) && !isHeld(kRight); }));
  expectNoKeyDown();
  key(kLeft, kShift, false);
  key(kRight, kA, false);
  type(kLeft, "gh");
  type(kRight, "b ");
  expect("Aghb ");
}

// Another pair of pointer and keyboard, as for a second person at the same screen.
TEST_F(X11Devices, AnotherPairOfMastersChangesNothing) {
  server_.addMasters("second person");
  type(kLeft, "ghbdtn ");
  expect("привет ");
  type(kRight, "vbh ");
  expect("привет мир ");
}

}  // namespace
}  // namespace tessarok::testing
