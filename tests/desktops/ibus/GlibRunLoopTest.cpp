// GLib's loop serves what the corrector adds, and sleeps when there is nothing to do.

#include <array>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

#include "desktops/ibus/GlibRunLoop.h"
#include "desktops/posix/PollSource.h"

namespace tessarok::ibus {
namespace {

/// The reading end of a pipe.
class Reader final : public posix::PollSource {
 public:
  Reader() { EXPECT_EQ(::pipe(ends_.data()), 0); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() override {
    ::close(ends_[0]);
    hangUp();
  }

  [[nodiscard]] int descriptor() const override { return ends_[0]; }
  [[nodiscard]] short events() const override { return isHeldBack ? short{0} : short{POLLIN}; }
  void ready(short) override {
    ++calls;
    char byte = 0;
    isAtEnd = ::read(ends_[0], &byte, 1) <= 0;
  }

  void send() { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }
  void hangUp() {
    if (ends_[1] >= 0) ::close(ends_[1]);
    ends_[1] = -1;
  }

  bool isHeldBack = false;
  bool isAtEnd = false;
  int calls = 0;

 private:
  std::array<int, 2> ends_{-1, -1};
};

class GlibRunLoopTest : public ::testing::Test {
 protected:
  GlibRunLoopTest() { loop_.add(reader_); }
  ~GlibRunLoopTest() override { loop_.remove(reader_); }

  /// How often the loop goes round in a moment.
  int turnsOfAMoment() {
    bool isOver = false;
    // Not the loop's own: behind a failure it does nothing any more.
    constexpr guint kMilliseconds = 20;
    g_timeout_add(
        kMilliseconds,
        [](gpointer over) {
          *static_cast<bool*>(over) = true;
          return G_SOURCE_REMOVE;
        },
        &isOver);
    int turns = 0;
    while (!isOver) {
      g_main_context_iteration(nullptr, TRUE);
      ++turns;
    }
    return turns;
  }

  /// What the moment itself takes: its end, and being told of a source for the first time.
  static constexpr int kFew = 5;

  inputmethod::Guard guard_;
  GlibRunLoop loop_{guard_};
  Reader reader_;
};

TEST_F(GlibRunLoopTest, SleepsWhileNothingHappens) {
  EXPECT_LE(turnsOfAMoment(), kFew);
  EXPECT_EQ(reader_.calls, 0);
}

TEST_F(GlibRunLoopTest, ServesWhatHasCome) {
  reader_.send();
  EXPECT_LE(turnsOfAMoment(), kFew);
  EXPECT_EQ(reader_.calls, 1);
}

TEST_F(GlibRunLoopTest, ASourceThatWaitsForNothingIsLeftAloneUntilItWaitsAgain) {
  reader_.isHeldBack = true;
  reader_.send();
  reader_.hangUp();
  EXPECT_LE(turnsOfAMoment(), kFew);
  EXPECT_EQ(reader_.calls, 0);
  reader_.isHeldBack = false;
  while (!reader_.isAtEnd)
    g_main_context_iteration(nullptr, TRUE);
  EXPECT_EQ(reader_.calls, 2);
}

TEST_F(GlibRunLoopTest, SleepsBehindAFailureWhateverComes) {
  loop_.async([] { throw std::runtime_error("a failure"); });
  EXPECT_LE(turnsOfAMoment(), kFew);
  ASSERT_TRUE(guard_.hasFailed());
  reader_.send();
  EXPECT_LE(turnsOfAMoment(), kFew);
  reader_.hangUp();
  EXPECT_LE(turnsOfAMoment(), kFew);
  EXPECT_EQ(reader_.calls, 0);
}

}  // namespace
}  // namespace tessarok::ibus
