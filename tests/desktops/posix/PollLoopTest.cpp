#include <algorithm>
#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>
#include <vector>

#include "desktops/posix/CallbackSource.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/PollLoop.h"
#include "tests/support/HandClock.h"

namespace tessarok::posix {
namespace {

class PollLoopTest : public ::testing::Test {
 protected:
  void SetUp() override {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    out_ = FileDescriptor(ends[0]);
    in_ = FileDescriptor(ends[1]);
  }
  /// A source with so many things to do that its descriptor says nothing of.
  CallbackSource sourceWith(int& left, std::function<void()> serve) {
    return CallbackSource(
        out_.get(), [] { return short{POLLIN}; }, [serve](short) { serve(); },
        [&left] { return left > 0; });
  }

  MonotonicClock clock_;
  PollLoop loop_{clock_};
  FileDescriptor out_;
  FileDescriptor in_;
};

TEST_F(PollLoopTest, ServesWhatTheDescriptorSaysNothingOf) {
  int left = 5;
  auto source = sourceWith(left, [&] {
    if (--left == 0) loop_.stop();
  });
  loop_.add(source);
  loop_.run();
  EXPECT_EQ(left, 0);
}

TEST_F(PollLoopTest, ReportsNoInputToASourceThatIsReady) {
  int left = 1;
  short reported = -1;
  CallbackSource source(
      out_.get(), [] { return short{POLLIN}; },
      [&](short events) {
        reported = events;
        loop_.stop();
      },
      [&] { return left > 0; });
  loop_.add(source);
  loop_.run();
  EXPECT_EQ(reported, 0);
}

// Keys are served by such a source, and the next must not overtake the one in hand.
TEST_F(PollLoopTest, ServesNothingInTheMiddleOfServing) {
  int left = 100;
  int depth = 0;
  int deepest = 0;
  auto source = sourceWith(left, [&] {
    deepest = std::max(deepest, ++depth);
    loop_.runQueue();
    --depth;
    if (--left == 0) loop_.stop();
  });
  loop_.add(source);
  // Input besides, so that there are two reasons to serve in every turn.
  ASSERT_EQ(::write(in_.get(), "x", 1), 1);
  loop_.run();
  EXPECT_EQ(deepest, 1);
}

TEST_F(PollLoopTest, TimersAndTheQueueRunBetweenTwoTurnsOfAReadySource) {
  int left = 1;
  std::vector<char> order;
  auto source = sourceWith(left, [&] {
    order.push_back('s');
    loop_.async([&] { order.push_back('q'); });
  });
  loop_.add(source);
  loop_.after(0, [&] {
    order.push_back('t');
    loop_.stop();
  });
  loop_.run();
  EXPECT_EQ(order, (std::vector<char>{'s', 'q', 't'}));
}

TEST_F(PollLoopTest, SaysWhenItWaitsAndWhenItGoesOn) {
  std::vector<char> order;
  loop_.onTurn = [&](bool waits) {
    order.push_back(waits ? 'w' : 'g');
    // As of a call that fails.
    errno = EIO;
  };
  loop_.after(0.001, [&] {
    order.push_back('t');
    loop_.stop();
  });
  loop_.run();
  EXPECT_EQ(order, (std::vector<char>{'w', 'g', 't'}));
}

TEST_F(PollLoopTest, SaysThatItGoesOnAlsoWhenItNeedNotWait) {
  int left = 2;
  std::vector<char> order;
  auto source = sourceWith(left, [&] {
    order.push_back('s');
    if (--left == 0) loop_.stop();
  });
  loop_.add(source);
  loop_.onTurn = [&](bool waits) { order.push_back(waits ? 'w' : 'g'); };
  loop_.run();
  EXPECT_EQ(order, (std::vector<char>{'g', 's', 'g', 's'}));
}

// A process that was stopped, or a clock that counts the machine's sleep.
TEST_F(PollLoopTest, WhatWasMissedInALongSleepIsNotMadeUpFor) {
  testing::HandClock clock;
  PollLoop loop(clock);
  int ticks = 0;
  const auto timer = loop.repeating(2.0, 0.5, [&] { ++ticks; });
  std::vector<char> order;
  loop.after(5.1, [&] { order.push_back('b'); });
  loop.after(3.0, [&] { order.push_back('a'); });
  // What has passed by each turn, and the ticks that there were before it.
  std::vector<double> passing = {1.5, 28800, 1.5, 0.5, 0};
  std::vector<int> seen;
  int left = static_cast<int>(passing.size());
  auto source = sourceWith(left, [&] {
    seen.push_back(ticks);
    clock.now += passing[passing.size() - static_cast<std::size_t>(left)];
    if (--left == 0) loop.stop();
  });
  loop.add(source);
  loop.run();
  EXPECT_EQ(seen, (std::vector<int>{0, 0, 1, 1, 2}));
  EXPECT_EQ(order, (std::vector<char>{'a', 'b'}));
}

}  // namespace
}  // namespace tessarok::posix
