// Whatever happens to the program, a person keeps the keyboard.

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/KeyboardGrab.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

class X11Failure : public ::testing::Test {
 protected:
  /// A letter and Shift are down, and the application has seen them.
  void holdKeys() {
    ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
    server_.key(kShift, true);
    server_.key(kA, true);
    ASSERT_TRUE(waitUntil([this] { return server_.keysDown().size() == 2; }));
    ASSERT_TRUE(window_.shows("A")) << window_.text();
  }

  XServer server_;
  GtkEntry window_{server_};
};

TEST_F(X11Failure, AKeyHeldAtTheStartDoesNotStayDown) {
  server_.key(kA, true);
  const Tessarok program(server_);
  EXPECT_FALSE(server_.isKeyboardHeld());
  server_.key(kA, false);
  EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  EXPECT_TRUE(server_.keysDown().empty());
}

TEST_F(X11Failure, ASecondCopyDoesNotStart) {
  Tessarok program(server_);
  Tessarok second(server_, {.settings = {}, .home = program.home()});
  EXPECT_EQ(second.exitStatus(), 1);
  EXPECT_TRUE(second.says("not started")) << second.errors();
  server_.type("ghbdtn ");
  EXPECT_TRUE(window_.shows("привет ")) << window_.text();
  // And after the first has gone, or was killed, another one does.
  program.sendToWorker(SIGKILL);
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
  Tessarok third(server_, {.settings = {}, .home = program.home()});
  EXPECT_TRUE(third.says("correcting")) << third.errors();
}

TEST_F(X11Failure, AHomeThatCannotBeWrittenIsNamedInOneLine) {
  const virtualdesktop::TemporaryDirectory home;
  std::ofstream(home.path() / ".local") << "a file in the way";
  Tessarok program(server_, {.settings = {}, .home = home.path()});
  EXPECT_EQ(program.exitStatus(), 1);
  const auto errors = program.errors();
  const auto start = "tessarok: not started; cannot write " + program.learned().string() + ": ";
  EXPECT_TRUE(errors.starts_with(start)) << errors;
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
}

TEST_F(X11Failure, AStandardErrorThatNobodyReadsEndsNeitherProcess) {
  const virtualdesktop::TemporaryDirectory folder;
  const auto pipe = folder.path() / "errors";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  Tessarok::Setup setup;
  setup.errors = pipe;
  Tessarok program(server_, setup);
  // As `head -c 1` does it.
  char first = 0;
  EXPECT_TRUE(waitUntil([&] { return ::read(reader, &first, 1) == 1; }));
  ::close(reader);
  ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  server_.type("ghbdtn ");
  EXPECT_TRUE(window_.shows("привет ")) << window_.text();
  // The watchdog wants to say how the worker has ended.
  program.sendToWorker(SIGKILL);
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
}

TEST_F(X11Failure, AHeldKeyboardIsSaidToBeInTheWay) {
  std::optional<KeyboardGrab> other(server_);
  const Tessarok program(server_, {});
  EXPECT_TRUE(program.says("no keyboard that another program does not hold")) << program.errors();
  other.reset();
  // It tries again and again.
  EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  server_.type("ghbdtn ");
  EXPECT_TRUE(window_.shows("привет ")) << window_.text();
}

TEST_F(X11Failure, AKeyboardThatGoesAndComesTypesOnce) {
  const Tessarok program(server_);
  std::string expected;
  for (int i = 0; i < 3; ++i) {
    server_.setKeyboardEnabled(false);
    server_.setKeyboardEnabled(true);
    EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
    server_.type("ghbdtn ");
    expected += "привет ";
    EXPECT_TRUE(window_.shows(expected)) << window_.text() << program.errors();
    server_.lockGroup(0);
  }
}

TEST_F(X11Failure, KeysBetweenAKeyboardsReturnAndItsNextHoldComeOnce) {
  const Tessarok program(server_);
  // As on a busy machine, on which the program gets to it too late.
  server_.serveNobodyElse();
  server_.setKeyboardEnabled(false);
  server_.setKeyboardEnabled(true);
  server_.type("one ghbdtn");
  server_.serveAll();
  ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  // This is no word of its own.
  server_.type("s ghbdtn ");
  EXPECT_TRUE(window_.shows("one ghbdtns привет ")) << window_.text() << program.errors();
}

TEST_F(X11Failure, AKeyDownWhileAKeyboardReturnsDoesNotStayDown) {
  const Tessarok program(server_);
  server_.serveNobodyElse();
  server_.setKeyboardEnabled(false);
  server_.setKeyboardEnabled(true);
  server_.key(kA, true);
  server_.serveAll();
  EXPECT_TRUE(window_.shows("a")) << window_.text();
  server_.key(kA, false);
  EXPECT_TRUE(waitUntil([this] { return server_.keysDown().empty(); }));
  ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  server_.type(" ghbdtn ");
  EXPECT_TRUE(window_.shows("a привет ")) << window_.text() << program.errors();
}

TEST_F(X11Failure, AKeyDownOnAKeyboardThatGoesDoesNotStayDown) {
  const Tessarok program(server_);
  holdKeys();
  server_.setKeyboardEnabled(false);
  EXPECT_TRUE(waitUntil([this] { return server_.keysDown().empty(); }));
}

TEST_F(X11Failure, TheEndOfTheServerEndsTheProgram) {
  auto server = std::make_unique<XServer>();
  GtkEntry window(*server);
  Tessarok program(*server);
  server->type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет ")) << window.text();
  server->stop();
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
  EXPECT_TRUE(program.says("X server has gone")) << program.errors();
}

TEST_F(X11Failure, TheEndOfTheServerEndsAProgramThatHangs) {
  auto server = std::make_unique<XServer>();
  GtkEntry window(*server);
  Tessarok program(*server);
  server->type("ghbdtn ");
  EXPECT_TRUE(window.shows("привет ")) << window.text();
  program.sendToWorker(SIGSTOP);
  server->stop();
  EXPECT_TRUE(program.says("the program did not answer and was ended")) << program.errors();
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
  // Nothing of the library's.
  EXPECT_EQ(program.errors().find("Xlib"), std::string::npos) << program.errors();
}

TEST_F(X11Failure, ADisplayInsideAWaylandSessionIsRefused) {
  // The devices of such a display have names of this kind.
  server_.addMasters("xwayland-pointer:1");
  Tessarok program(server_, {});
  EXPECT_EQ(program.exitStatus(), 2);
  EXPECT_TRUE(program.says("this display is part of a Wayland session")) << program.errors();
  server_.type("ghbdtn ");
  EXPECT_TRUE(window_.shows("ghbdtn ")) << window_.text();
}

TEST_F(X11Failure, ADictionaryThatIsNotUsedIsNamed) {
  const virtualdesktop::TemporaryDirectory home;
  const auto dictionary = home.path() / ".local" / "share" / "Tessarok" / "dictionary.txt";
  writeFile(dictionary, "слово\n\xff\n");
  Tessarok::Setup setup;
  setup.home = home.path();
  const Tessarok program(server_, setup);
  EXPECT_TRUE(
      program.says("no word of " + dictionary.string() + " counts: line 2 is not valid UTF-8"))
      << program.errors();
}

TEST_F(X11Failure, ADisplayWithoutSyntheticKeysIsRefused) {
  XServer server("us,ru", "", XServer::Hardware::noSyntheticKeys);
  Tessarok program(server, {});
  EXPECT_EQ(program.exitStatus(), 2);
  EXPECT_TRUE(program.says("the X server has no XTEST extension")) << program.errors();
}

TEST_F(X11Failure, WithoutADisplayTheReasonIsSaid) {
  auto server = std::make_unique<XServer>();
  server->stop();
  Tessarok program(*server, {});
  EXPECT_EQ(program.exitStatus(), 2);
  EXPECT_TRUE(program.says("cannot open the display")) << program.errors();
}

}  // namespace
}  // namespace tessarok::testing
