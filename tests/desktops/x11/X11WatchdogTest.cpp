// Two processes watch over each other, so that a person keeps the keyboard whatever becomes of
// either; and while nothing happens, neither of them does anything.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <pty.h>
#include <sched.h>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "desktops/posix/FileDescriptor.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/FairClock.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/ProcessState.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/Signals.h"

// Last, because of the plain words that Xlib defines as macros.
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

namespace tessarok::testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kControlC = 3;
constexpr char kControlZ = 26;

/// A terminal, at which nobody reads what is written.
class Terminal {
 public:
  Terminal() {
    int ends[2];
    if (::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) != 0) {
      throw std::runtime_error("no pseudo-terminal");
    }
    hands_ = posix::FileDescriptor(ends[0]);
    inside_ = posix::FileDescriptor(ends[1]);
    // A program that had it would keep the terminal alive.
    for (const int end : ends)
      ::fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  [[nodiscard]] int inside() const { return inside_.get(); }
  void type(char key) { ASSERT_EQ(::write(hands_.get(), &key, 1), 1); }
  void close() {
    static_cast<void>(hands_.close());
    static_cast<void>(inside_.close());
  }

 private:
  posix::FileDescriptor hands_;
  posix::FileDescriptor inside_;
};

/// Another program, which has the keyboard to itself.
class Holder {
 public:
  explicit Holder(XServer& server)
      : display_(XOpenDisplay(server.name().c_str())), keyboard_(server.keyboard()) {
    unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
    XIEventMask mask{keyboard_, sizeof bits, bits};
    XIGrabDevice(display_, keyboard_, DefaultRootWindow(display_), CurrentTime, None, GrabModeAsync,
                 GrabModeAsync, False, &mask);
    XSync(display_, False);
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  ~Holder() { XCloseDisplay(display_); }

 private:
  Display* display_;
  int keyboard_;
};

/// For as long as this lives another process has next to no processor: one that is busy has the
/// same one, and goes first.
class StarvedProcess {
 public:
  explicit StarvedProcess(pid_t process) : process_(process) {
    const int processor = ::sched_getcpu();
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(processor), &one);
    busy_ = ::fork();
    if (busy_ == 0) beBusyOn(one);
    if (::sched_getaffinity(process, sizeof processors_, &processors_) != 0 ||
        !schedule(SCHED_IDLE, one)) {
      throw std::runtime_error("a process cannot be starved here");
    }
  }
  StarvedProcess(const StarvedProcess&) = delete;
  StarvedProcess& operator=(const StarvedProcess&) = delete;
  ~StarvedProcess() {
    sendSignal(busy_, SIGKILL);
    ::waitpid(busy_, nullptr, 0);
    schedule(SCHED_OTHER, processors_);
  }

 private:
  bool schedule(int policy, const cpu_set_t& processors) const {
    const sched_param priority{};
    return ::sched_setaffinity(process_, sizeof processors, &processors) == 0 &&
           ::sched_setscheduler(process_, policy, &priority) == 0;
  }
  [[noreturn]] static void beBusyOn(const cpu_set_t& processor) {
    // Nor is it to be busy when the test has been ended.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::sched_setaffinity(0, sizeof processor, &processor) != 0) ::_exit(1);
    for (volatile bool goesOn = true; goesOn;) {
    }
    ::_exit(0);
  }

  pid_t process_;
  cpu_set_t processors_{};
  pid_t busy_ = -1;
};

class X11Watchdog : public ::testing::Test {
 protected:
  /// A letter and Shift are down, and the application has seen them.
  void holdKeys() {
    ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
    server_.lockGroup(0);
    server_.key(kShift, true);
    server_.key(kA, true);
    ASSERT_TRUE(waitUntil([this] { return server_.keysDown().size() == 2; }));
    ASSERT_TRUE(waitUntil([this] { return window_.text().ends_with("A"); })) << window_.text();
  }
  /// The keyboard is free and no key is down, within a second.
  void expectFreeWithinASecond() {
    const FairClock clock;
    EXPECT_TRUE(
        waitUntil([this] { return !server_.isKeyboardHeld() && server_.keysDown().empty(); }));
    const auto passed = clock.passed();
    EXPECT_LT(passed, 1.0);
    RecordProperty("milliseconds", static_cast<int>(passed * 1000));
    const auto before = window_.text();
    server_.key(kShift, false);
    server_.key(kA, false);
    server_.type("ghbdtn ");
    EXPECT_TRUE(window_.shows(before + "ghbdtn ")) << window_.text();
  }
  void expectCorrecting() {
    EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
    const auto before = window_.text();
    server_.lockGroup(0);
    server_.type("ghbdtn ");
    EXPECT_TRUE(window_.shows(before + "привет ")) << window_.text();
  }

  XServer server_;
  GtkEntry window_{server_};
};

TEST_F(X11Watchdog, AKilledWorkerLeavesNoKeyDown) {
  Tessarok program(server_);
  holdKeys();
  program.sendToWorker(SIGKILL);
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
  EXPECT_TRUE(program.says("ended by signal 9")) << program.errors();
}

TEST_F(X11Watchdog, AStoppedWorkerIsEnded) {
  Tessarok program(server_);
  holdKeys();
  program.sendToWorker(SIGSTOP);
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
  EXPECT_TRUE(program.says("did not answer")) << program.errors();
}

// Long after its last turn: nothing but the stop itself says that it is stopped.
TEST_F(X11Watchdog, AStoppedWorkerIsEndedBeforeTheNextKeyIsTyped) {
  Tessarok program(server_);
  ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  program.sendToWorker(SIGSTOP);
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
}

#ifdef TESSAROK_HANGING_KEY
TEST_F(X11Watchdog, AWorkerBusyWithNothingIsEnded) {
  Tessarok program(server_, {.settings = {},
                             .home = {},
                             .environment = {{"LD_PRELOAD", TESSAROK_HANGING_KEY},
                                             {"TESSAROK_HANGING_KEY", std::to_string(kB)}}});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  holdKeys();
  server_.key(kB, true);
  server_.key(kB, false);
  server_.sync();
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL);
  EXPECT_TRUE(program.says("did not answer")) << program.errors();
}
#endif

TEST_F(X11Watchdog, AWorkerThatHoldsNothingMayBeStopped) {
  std::optional<Holder> other(server_);
  Tessarok program(server_, {});
  ASSERT_TRUE(program.says("no keyboard that another program does not hold")) << program.errors();
  program.sendToWorker(SIGSTOP);
  EXPECT_TRUE(waitUntil([&] { return stateOf(program.worker()) == 'T'; }));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  EXPECT_EQ(stateOf(program.worker()), 'T');
  program.sendToWorker(SIGCONT);
  other.reset();
  expectCorrecting();
}

TEST_F(X11Watchdog, AnEndedProgramLeavesNoKeyDown) {
  Tessarok program(server_);
  holdKeys();
  program.send(SIGTERM);
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
}

TEST_F(X11Watchdog, KeysUnderWayWhenTheProgramEndsArrive) {
  std::string keys;
  for (int i = 0; i < 40; ++i)
    keys += std::to_string(1000 + i) + " ";
  std::string typed;
  for (int i = 0; i < 3; ++i) {
    Tessarok program(server_);
    ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
    server_.lockGroup(0);
    server_.type(keys);
    program.send(SIGTERM);
    typed += keys;
    EXPECT_TRUE(window_.shows(typed)) << window_.text();
    EXPECT_EQ(program.exitStatus(), 0) << program.errors();
  }
}

// Faster than hands, keys may come behind those that follow while the keyboards are let go. Each is
// pressed once, as the server takes no second press of a key that is down.
TEST_F(X11Watchdog, NoKeyPressedWhileTheProgramEndsIsLost) {
  const std::string keys = "abcdefghijklmnopqrstuvwxyz0123456789";
  const auto sorted = [](std::string text) {
    std::ranges::sort(text);
    return text;
  };
  std::string typed;
  for (int i = 0; i < 20; ++i) {
    const Tessarok program(server_);
    ASSERT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); }));
    server_.lockGroup(0);
    program.sendToWorker(SIGTERM);
    for (const char key : keys)
      server_.type(std::string(1, key));
    typed += keys;
    EXPECT_TRUE(waitUntil([&] { return sorted(window_.text()) == sorted(typed); }))
        << window_.text() << "\ntyped:\n"
        << typed;
    EXPECT_TRUE(waitUntil([this] { return server_.keysDown().empty(); }));
  }
}

// As a session does that ends, and whoever looks for the program by its name.
TEST_F(X11Watchdog, BothMayBeToldToEndAndMoreThanOnce) {
  Tessarok program(server_);
  holdKeys();
  const auto worker = program.worker();
  for (int i = 0; i < 20; ++i) {
    sendSignal(worker, SIGTERM);
    program.send(SIGTERM);
  }
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
}

TEST_F(X11Watchdog, WithoutItsWatchdogTheWorkerHoldsNoKeyboard) {
  Tessarok program(server_);
  holdKeys();
  const auto worker = program.worker();
  program.send(SIGKILL);
  expectFreeWithinASecond();
  EXPECT_TRUE(program.says("watchdog process has ended")) << program.errors();
  EXPECT_TRUE(waitUntil([&] { return stateOf(worker) == 'Z'; }));
}

TEST_F(X11Watchdog, AStoppedWatchdogLeavesTypingAlone) {
  Tessarok program(server_);
  expectCorrecting();
  program.send(SIGSTOP);
  EXPECT_TRUE(waitUntil([&] { return stateOf(program.process()) == 'T'; }));
  for (int i = 0; i < 3; ++i)
    expectCorrecting();
  // When it goes on, it also hears of what happened meanwhile.
  holdKeys();
  program.sendToWorker(SIGSTOP);
  program.send(SIGCONT);
  expectFreeWithinASecond();
}

// A screen that is plugged in, or a graphics driver with much to do, keeps a server from answering
// for longer than that. Only the server could free the keyboard, so nobody is helped by the
// worker's end.
TEST_F(X11Watchdog, AServerThatAnswersLateEndsNobody) {
  Tessarok program(server_);
  expectCorrecting();
  auto expected = window_.text();
  for (int i = 0; i < 3; ++i) {
    server_.lockGroup(0);
    server_.type("ghbdtn ghbdtn ");
    server_.pause();
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    server_.resume();
    expected += "привет привет ";
    ASSERT_TRUE(window_.shows(expected)) << window_.text() << '\n' << program.errors();
  }
  EXPECT_EQ(program.errors().find("did not answer"), std::string::npos) << program.errors();
}

TEST_F(X11Watchdog, AWorkerThatGetsNoProcessorIsNotEnded) {
  Tessarok program(server_);
  expectCorrecting();
  auto expected = window_.text();
  for (int i = 0; i < 3; ++i) {
    server_.lockGroup(0);
    {
      const StarvedProcess starved(program.worker());
      server_.type("ghbdtn ");
      // Longer than a worker has that nobody keeps from working, and far from the five seconds
      // after which it is given up: afterwards others may still have the processors.
      std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    }
    expected += "привет ";
    ASSERT_TRUE(window_.shows(expected)) << window_.text() << '\n' << program.errors();
  }
  EXPECT_EQ(program.errors().find("did not answer"), std::string::npos) << program.errors();
}

TEST_F(X11Watchdog, ControlZAtTheTerminalFreesTheKeyboard) {
  Terminal terminal;
  Tessarok program(server_,
                   {.settings = {}, .home = {}, .environment = {}, .terminal = terminal.inside()});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  holdKeys();
  terminal.type(kControlZ);
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 128 + SIGKILL) << program.errors();
}

TEST_F(X11Watchdog, WhereNothingIsHeldControlZStopsBothAndTheyGoOn) {
  std::optional<Holder> other(server_);
  Terminal terminal;
  Tessarok program(server_,
                   {.settings = {}, .home = {}, .environment = {}, .terminal = terminal.inside()});
  ASSERT_TRUE(program.says("no keyboard that another program does not hold")) << program.errors();
  terminal.type(kControlZ);
  EXPECT_TRUE(waitUntil(
      [&] { return stateOf(program.process()) == 'T' && stateOf(program.worker()) == 'T'; }));
  other.reset();
  program.send(SIGCONT);
  expectCorrecting();
}

TEST_F(X11Watchdog, ControlCAtTheTerminalEndsTheProgram) {
  Terminal terminal;
  Tessarok program(server_,
                   {.settings = {}, .home = {}, .environment = {}, .terminal = terminal.inside()});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  holdKeys();
  terminal.type(kControlC);
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
}

TEST_F(X11Watchdog, TheEndOfTheTerminalEndsTheProgram) {
  Terminal terminal;
  Tessarok program(server_,
                   {.settings = {}, .home = {}, .environment = {}, .terminal = terminal.inside()});
  ASSERT_TRUE(program.says("correcting")) << program.errors();
  holdKeys();
  terminal.close();
  expectFreeWithinASecond();
  EXPECT_EQ(program.exitStatus(), 0) << program.errors();
}

TEST_F(X11Watchdog, NothingButTheTickOfTwoSecondsWakesThem) {
  constexpr int kTicks = 3;
  Tessarok program(server_);
  expectCorrecting();
  // What was typed has been dealt with.
  std::this_thread::sleep_for(std::chrono::seconds(3));
  const auto worker = program.worker();
  const auto waits = waitsOf(worker);
  const auto watchdogWaits = waitsOf(program.process());
  const auto before = Clock::now();
  std::this_thread::sleep_for(std::chrono::seconds(2 * kTicks));
  // A busy machine wakes this thread late, and the program meanwhile.
  const std::chrono::duration<double> passed = Clock::now() - before;
  // A tick wakes the main thread and the one that knows what was learned; three waits a tick are
  // what was counted. One tick more may begin or end in this time.
  EXPECT_LE(waitsOf(worker) - waits, 3 * (static_cast<long>(passed.count() / 2) + 1));
  EXPECT_EQ(waitsOf(program.process()) - watchdogWaits, 0);
}

}  // namespace
}  // namespace tessarok::testing
