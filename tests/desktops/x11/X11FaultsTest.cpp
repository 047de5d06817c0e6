// Every call of the system and of the X libraries that can fail is made to fail in turn, in both
// processes, while a person types.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/desktops/x11/FaultTest.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/Patience.h"

namespace tessarok::testing {
namespace {

/// After these nothing has happened yet, and the caller tries again.
bool isHarmless(int error) {
  return error == EINTR || error == EAGAIN;
}

/// Characters of UTF-8.
std::ptrdiff_t lengthOf(const std::string& text) {
  return std::ranges::count_if(
      text, [](char unit) { return (static_cast<unsigned char>(unit) & 0xC0u) != 0x80; });
}

class X11Faults : public FaultTest {
 protected:
  /// The messages but those about buses, of which there are none here.
  [[nodiscard]] static std::string withoutBuses(const std::string& errors) {
    std::istringstream in(errors);
    std::string rest;
    for (std::string line; std::getline(in, line);) {
      if (line.find("there is no s") == std::string::npos) rest += line + "\n";
    }
    return rest;
  }
  /// 0 for calls that have one way of their own.
  [[nodiscard]] std::vector<int> errorsOf(const std::string& call) const override {
    static const std::map<std::string, std::vector<int>> kErrors = {
        {"fork", {ENOMEM}},
        {"open", {EACCES, EMFILE, EINTR}},
        {"read", {EIO, EINTR}},
        // All but what goes into the pipe for signals, which never has another error, is as well
        // done by send.
        {"write", {EINTR}},
        {"recv", {ECONNRESET, EAGAIN}},
        {"send", {EPIPE, EAGAIN}},
        {"recvmsg", {ECONNRESET, EAGAIN}},
        {"sendmsg", {EPIPE, EAGAIN}},
        {"writev", {EPIPE, EAGAIN}},
        {"poll", {EINTR, ENOMEM}},
        {"poll-of-one", {EINTR, ENOMEM}},
        {"socket", {EMFILE}},
        {"socketpair", {EMFILE}},
        {"connect", {ECONNREFUSED}},
        {"pipe2", {EMFILE}},
        {"timerfd_create", {EMFILE}},
        {"mmap", {ENOMEM}},
        {"pthread_create", {ENOMEM}},
        {"XIGrabDevice", {0, EACCES}},
    };
    // These need a bus.
    if (call.starts_with("sd_bus_")) return {};
    const auto found = kErrors.find(call);
    return found == kErrors.end() ? std::vector<int>{0} : found->second;
  }
  /// Xlib takes its connection for lost after some failures. The keys that the server has sent by
  /// then, and those that are to be sent, are gone with it.
  [[nodiscard]] Promises promisesWith(const Failure& failure) const override {
    static const std::set<std::string> kOfTheConnection = {
        "recv", "send", "recvmsg", "sendmsg", "writev", "poll", "poll-of-one", "socket", "connect"};
    const bool isNothing = isHarmless(failure.error);
    return {.noKeyIsLost = isNothing || !kOfTheConnection.contains(failure.call),
            .itCorrects = isNothing,
            // In the middle of an answer the X library waits for the rest of it then, for ever.
            .itMayHang = failure.call == "poll-of-one" && !isNothing};
  }
};

TEST_F(X11Faults, BreakNoPromise) {
  makeAllFail();
}

// Wherever in the start it happens: the program ends by itself, and has said why.
TEST_F(X11Faults, AConnectionLostDuringTheStartIsSaidOnce) {
  const int step = std::getenv("TESSAROK_ALL_FAULTS") == nullptr ? 7 : 1;
  for (const auto& [call, error] : {std::pair("recvmsg", ECONNRESET), std::pair("writev", EPIPE)}) {
    int losses = 0;
    for (int number = 1;; number += step) {
      Tessarok program(
          server_,
          {.settings = {},
           .home = {},
           .environment = {{"LD_PRELOAD", TESSAROK_X11_FAULTS},
                           {"TESSAROK_FAULT", Failure{"worker", call, number, error}.text()}}});
      static_cast<void>(waitUntil([&] { return isReadyOrOver(program); }));
      const auto before = program.errors();
      if (before.find("correcting in every") != std::string::npos) break;
      ++losses;
      EXPECT_EQ(program.exitStatus(), 2) << call << " " << number;
      const auto said = withoutBuses(program.errors());
      EXPECT_EQ(std::ranges::count(said, '\n'), 1) << call << " " << number << ": " << said;
      EXPECT_TRUE(said.find("X server has gone") != std::string::npos ||
                  said.find("cannot open the display") != std::string::npos)
          << call << " " << number << ": " << said;
    }
    EXPECT_GT(losses, 0) << call;
  }
}

// Long enough for a machine that is busy with a login.
TEST_F(X11Faults, AServerThatNeverAnswersIsSaidOnce) {
  if (std::getenv("TESSAROK_ALL_FAULTS") == nullptr) GTEST_SKIP() << "half a minute; make faults";
  server_.pause();
  Tessarok program(server_, {});
  EXPECT_TRUE(waitUntil([&] { return isReadyOrOver(program); }, 2 * kPatience));
  server_.resume();
  EXPECT_EQ(program.exitStatus(), 2);
  EXPECT_EQ(program.errors(),
            "Tessarok: not ready after 30 seconds; the X server does not seem to answer\n");
}

// The server's error is one that Xlib takes for a success.
TEST_F(X11Faults, AKeyboardThatTheServerRefusesIsAskedForAgain) {
  Tessarok program(
      server_,
      {.settings = {},
       .home = {},
       .environment = {{"LD_PRELOAD", TESSAROK_X11_FAULTS},
                       {"TESSAROK_FAULT", Failure{"worker", "XIGrabDevice", 1, EACCES}.text()}}});
  EXPECT_TRUE(program.says("another program holds the keyboard")) << program.errors();
  EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  server_.type("ghbdtn ");
  EXPECT_TRUE(window_.shows("привет ")) << window_.text();
}

// The watchdog's own connection may be lost long before it is needed, or just then.
TEST_F(X11Faults, AKilledWorkerLeavesNoKeyDownWhereverTheWatchdogsConnectionIsLost) {
  const int step = std::getenv("TESSAROK_ALL_FAULTS") == nullptr ? 5 : 1;
  constexpr int kMoreThanItMakes = 40;
  int releases = 0;
  for (const char* process : {"", "releaser"}) {
    for (int number = 1; number < kMoreThanItMakes; number += step) {
      const Failure failure{process, "recvmsg", number, ECONNRESET};
      Tessarok program(server_, {.settings = {},
                                 .home = {},
                                 .environment = {{"LD_PRELOAD", TESSAROK_X11_FAULTS},
                                                 {"TESSAROK_FAULT", failure.text()}}});
      ASSERT_TRUE(waitUntil([&] { return isReadyOrOver(program); })) << failure.text();
      const auto before = window_.text();
      server_.lockGroup(0);
      server_.type("vbh ");
      server_.key(kA, true);
      EXPECT_TRUE(waitUntil([&] { return lengthOf(window_.text()) == lengthOf(before) + 5; }))
          << failure.text() << window_.text();
      program.sendToWorker(SIGKILL);
      const int status = program.exitStatus();
      // While it connects it ends, and the worker lets go: A is down on the person's own keyboard.
      const bool isReleased =
          status == EXIT_FAILURE || waitUntil([this] { return server_.keysDown().empty(); });
      EXPECT_TRUE(isReleased) << failure.text() << program.errors();
      server_.key(kA, false);
      if (status == EXIT_FAILURE) continue;
      EXPECT_EQ(status, 128 + SIGKILL) << failure.text() << program.errors();
      ++releases;
    }
  }
  EXPECT_GT(releases, kMoreThanItMakes / step);
}

}  // namespace
}  // namespace tessarok::testing
