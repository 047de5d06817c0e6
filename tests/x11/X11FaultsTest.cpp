// Every call of the system and of the X libraries that can fail is made to fail in turn, in both
// processes, while a person types.

#include <cerrno>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "x11/FaultTest.h"
#include "x11/Patience.h"

namespace tessarok::testing {
namespace {

/// After these nothing has happened yet, and the caller tries again.
bool isHarmless(int error) {
  return error == EINTR || error == EAGAIN;
}

class X11Faults : public FaultTest {
 protected:
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
        // After another error in the middle of an answer the X library waits for its rest for ever;
        // that is a worker that hangs, and has a test of its own.
        {"poll-of-one", {EINTR}},
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
    static const std::set<std::string> kOfTheConnection = {"recv",   "send", "recvmsg", "sendmsg",
                                                           "writev", "poll", "socket",  "connect"};
    const bool isNothing = isHarmless(failure.error);
    return {.noKeyIsLost = isNothing || !kOfTheConnection.contains(failure.call),
            .itCorrects = isNothing};
  }
};

TEST_F(X11Faults, BreakNoPromise) {
  makeAllFail();
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

}  // namespace
}  // namespace tessarok::testing
