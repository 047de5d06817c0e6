// Every call that can fail is made to fail in turn, in both processes, while a person types.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/virtual/TemporaryDirectory.h"
#include "x11/Applications.h"
#include "x11/Patience.h"
#include "x11/Tessarok.h"
#include "x11/XServer.h"

namespace tessarok::testing {
namespace {

using Calls = std::map<std::string, int>;

/// Nobody has asked yet how it ended.
bool hasEnded(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  std::getline(file, line);
  return line.find(") Z ") != std::string::npos;
}

/// Of every kind, at most so many fail when all are to.
constexpr int kMost = 60;

/// What each call may fail with; 0 for calls that have one way of their own.
std::vector<int> errorsOf(const std::string& call) {
  static const std::map<std::string, std::vector<int>> kErrors = {
      {"fork", {ENOMEM}},
      {"open", {EACCES, EMFILE, EINTR}},
      {"read", {EIO, EINTR}},
      // All but what goes into the pipe for signals, which never has another error, is as well done
      // by send.
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
  const auto found = kErrors.find(call);
  return found == kErrors.end() ? std::vector<int>{0} : found->second;
}

/// After these nothing has happened yet, and the caller tries again.
bool isHarmless(int error) {
  return error == EINTR || error == EAGAIN;
}

/// Xlib takes its connection for lost after such a failure. The keys that the server has sent by
/// then, and those that are to be sent, are gone with it.
bool mayLoseTheConnection(const std::string& call) {
  static const std::set<std::string> kCalls = {"recv",   "send", "recvmsg", "sendmsg",
                                               "writev", "poll", "socket",  "connect"};
  return kCalls.contains(call);
}

class X11Faults : public ::testing::Test {
 protected:
  /// One life of the program, from its start to its end; what it did not keep of its promises.
  std::string broken(const std::string& process, const std::string& call, int number, int error) {
    return live({{"TESSAROK_FAULT", call + ":" + std::to_string(number) + ":" +
                                        std::to_string(error) + ":" + process}},
                mayLoseTheConnection(call) && !isHarmless(error), isHarmless(error));
  }
  /// How often each process makes each call when all is well.
  std::map<std::string, Calls> counts() {
    const auto file = folder_.path() / "counts";
    EXPECT_EQ(live({{"TESSAROK_FAULT_COUNTS", file.string()}}, false, true), "");
    std::map<std::string, Calls> counts;
    for (const auto* process : {"", "worker"}) {
      std::ifstream in(file.string() + (*process == '\0' ? "" : ".") + process);
      int number = 0;
      for (std::string call; in >> call >> number;)
        if (number > 0) counts[process][call] = number;
    }
    return counts;
  }

 private:
  std::string live(std::map<std::string, std::string> environment, bool mayLoseKeys,
                   bool mustCorrect) {
    environment["LD_PRELOAD"] = TESSAROK_X11_FAULTS;
    server_.lockGroup(0);
    const auto before = window_.text();
    std::string problem;
    {
      Tessarok program(server_, {.settings = {}, .home = {}, .environment = environment});
      // It may also end, or wait for something that it says.
      static_cast<void>(waitUntil([&] { return isReadyOrOver(program); }));
      server_.type("ghbdtn hello ");
      problem = whatIsWrongWithText(before, mayLoseKeys, mustCorrect);
      program.send(SIGTERM);
      const int status = program.exitStatus();
      if (status < 0) return "it ends; " + program.errors();
      // On its way out it no longer hears of signals.
      const bool wasEnding = mayLoseKeys && status == 128 + SIGTERM;
      if (status > 2 && !wasEnding)
        return "it ends by itself: " + std::to_string(status) + program.errors();
      if (problem.empty()) problem = whatIsWrongWithErrors(program.errors(), status, mustCorrect);
      if (!problem.empty()) problem += "; it said: " + program.errors();
    }
    if (const auto left = whatIsLeft(); !left.empty()) return left;
    return problem;
  }
  static bool isReadyOrOver(const Tessarok& program) {
    const auto errors = program.errors();
    return errors.find("correcting in") != std::string::npos ||
           errors.find("no keyboard that") != std::string::npos ||
           errors.find("holds the keyboard") != std::string::npos || hasEnded(program.process());
  }
  std::string whatIsWrongWithText(const std::string& before, bool mayLoseKeys, bool mustCorrect) {
    static const std::set<std::string> kShown = {"ghbdtn hello ", "привет hello ", "ghbdtn руддщ ",
                                                 "привет руддщ "};
    const auto isDone = [&] {
      const auto typed = window_.text().substr(before.size());
      return mustCorrect ? typed == "привет hello " : kShown.contains(typed);
    };
    if (waitUntil(isDone, mayLoseKeys ? 1 : kPatience) || mayLoseKeys) return {};
    return "no key is lost: " + window_.text().substr(before.size());
  }
  static std::string whatIsWrongWithErrors(const std::string& errors, int status,
                                           bool mustCorrect) {
    std::istringstream in(errors);
    std::set<std::string> lines;
    for (std::string line; std::getline(in, line);) {
      if (!lines.insert(line).second) return "it says it once";
    }
    if (mustCorrect && status != 0) return "an interruption is no failure";
    const bool corrects = errors.find("correcting in") != std::string::npos;
    return status != 0 || !corrects ? lines.empty() ? "it says why" : "" : "";
  }
  /// The keyboard is free, no key is down, and what is typed comes out.
  std::string whatIsLeft() {
    if (!waitUntil([this] { return !server_.isKeyboardHeld(); })) return "the keyboard is free";
    if (!waitUntil([this] { return server_.keysDown().empty(); })) return "no key stays down";
    server_.lockGroup(0);
    const auto before = window_.text();
    server_.type("vbh\n");
    if (!window_.shows(before + "vbh\n")) return "keys come out afterwards: " + window_.text();
    return {};
  }

  virtualdesktop::TemporaryDirectory folder_;

 protected:
  XServer server_;
  GtkEntry window_{server_};
};

/// Which of a number of calls fail: all of them, or the first, the last and one between.
std::set<int> chosen(int count, std::mt19937& random) {
  const bool all = std::getenv("TESSAROK_ALL_FAULTS") != nullptr;
  const auto any = [&] { return 1 + static_cast<int>(random() % static_cast<unsigned>(count)); };
  std::set<int> numbers{1, count};
  if (!all) return numbers.insert(any()), numbers;
  if (count <= kMost) {
    for (int number = 1; number <= count; ++number)
      numbers.insert(number);
  }
  while (static_cast<int>(numbers.size()) < std::min(count, kMost))
    numbers.insert(any());
  return numbers;
}

TEST_F(X11Faults, BreakNoPromise) {
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same ones every time
  const auto* only = std::getenv("TESSAROK_ONLY_FAULT");
  int made = 0;
  for (const auto& [process, calls] : counts()) {
    for (const auto& [call, count] : calls) {
      if (only != nullptr && call != only) continue;
      for (const int number : chosen(count, random)) {
        for (const int error : errorsOf(call)) {
          ++made;
          const auto problem = broken(process, call, number, error);
          EXPECT_EQ(problem, "") << (process.empty() ? "watchdog" : process) << ": " << call << " "
                                 << number << " of " << count << ", " << std::strerror(error);
        }
      }
    }
  }
  RecordProperty("made", made);
  std::cout << made << " failures were made\n";
}

// The server's error is one that Xlib takes for a success.
TEST_F(X11Faults, AKeyboardThatTheServerRefusesIsAskedForAgain) {
  Tessarok program(
      server_, {.settings = {},
                .home = {},
                .environment = {
                    {"LD_PRELOAD", TESSAROK_X11_FAULTS},
                    {"TESSAROK_FAULT", "XIGrabDevice:1:" + std::to_string(EACCES) + ":worker"}}});
  EXPECT_TRUE(program.says("another program holds the keyboard")) << program.errors();
  EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  server_.type("ghbdtn ");
  EXPECT_TRUE(window_.shows("привет ")) << window_.text();
}

}  // namespace
}  // namespace tessarok::testing
