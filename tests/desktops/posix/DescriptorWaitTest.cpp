#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "desktops/posix/DescriptorWait.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/Pipe.h"
#include "desktops/posix/SelectWait.h"

namespace tessarok::posix {
namespace {

using Wait = int (*)(std::span<pollfd>, int);

/// Both ways of waiting, which must answer alike.
class DescriptorWaitTest : public ::testing::TestWithParam<Wait> {
 protected:
  DescriptorWaitTest() : pipe_(openPipe(PipeMode::nonBlocking).value()) {}

  static int wait(std::vector<pollfd>& descriptors, int milliseconds) {
    return GetParam()(descriptors, milliseconds);
  }
  /// What is told of one descriptor, at once.
  static int wait(int descriptor, short events) {
    std::vector<pollfd> one{{descriptor, events, -1}};
    const int count = wait(one, 0);
    EXPECT_EQ(count, one[0].revents == 0 ? 0 : 1);
    return one[0].revents;
  }
  void fill() const {
    const std::string bytes(65536, 'x');
    while (::write(pipe_.writer.get(), bytes.data(), bytes.size()) > 0) {
    }
  }

  Pipe pipe_;
};

TEST_P(DescriptorWaitTest, TellsInputAndRoom) {
  EXPECT_EQ(wait(pipe_.reader.get(), POLLIN), 0);
  EXPECT_EQ(wait(pipe_.writer.get(), POLLOUT), POLLOUT);
  fill();
  EXPECT_EQ(wait(pipe_.reader.get(), POLLIN), POLLIN);
  EXPECT_EQ(wait(pipe_.writer.get(), POLLOUT), 0);
}

TEST_P(DescriptorWaitTest, TellsOfEachWhatIsAwaitedOfIt) {
  fill();
  std::vector<pollfd> several{{pipe_.writer.get(), POLLOUT, -1},
                              {-1, POLLIN, -1},
                              {pipe_.reader.get(), POLLIN, -1},
                              {pipe_.reader.get(), POLLIN, -1}};
  EXPECT_EQ(wait(several, -1), 2);
  std::vector<short> told;
  std::transform(several.begin(), several.end(), std::back_inserter(told),
                 [](const pollfd& entry) { return entry.revents; });
  EXPECT_EQ(told, (std::vector<short>{0, 0, POLLIN, POLLIN}));
}

TEST_P(DescriptorWaitTest, ReturnsWhenTheTimeIsOver) {
  std::vector<pollfd> none;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(wait(none, 20), 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

TEST_P(DescriptorWaitTest, AnEndThatHasGoneDoesNotLetOneWait) {
  pipe_.writer = FileDescriptor();
  EXPECT_NE(wait(pipe_.reader.get(), POLLIN), 0);
  EXPECT_EQ(wait(pipe_.reader.get(), POLLIN) & POLLOUT, 0);
}

TEST_P(DescriptorWaitTest, ABrokenPipeDoesNotLetOneWait) {
  fill();
  pipe_.reader = FileDescriptor();
  EXPECT_NE(wait(pipe_.writer.get(), POLLOUT), 0);
}

TEST_P(DescriptorWaitTest, TellsWhichDescriptorIsNotOpen) {
  const int closed = ::dup(pipe_.reader.get());
  ::close(closed);
  std::vector<pollfd> both{{pipe_.reader.get(), POLLIN, -1}, {closed, POLLIN, -1}};
  EXPECT_EQ(wait(both, -1), 1);
  EXPECT_EQ(both[0].revents, 0);
  EXPECT_EQ(both[1].revents, POLLNVAL);
}

TEST_P(DescriptorWaitTest, ServesDescriptorsOfAnyNumber) {
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  const auto former = limit;
  limit.rlim_cur = limit.rlim_max;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
  if (limit.rlim_cur < 3001) GTEST_SKIP() << "so many files cannot be open";
  {
    const FileDescriptor high(::fcntl(pipe_.reader.get(), F_DUPFD, 3000));
    ASSERT_GE(high.get(), 3000);
    EXPECT_EQ(wait(high.get(), POLLIN), 0);
    fill();
    EXPECT_EQ(wait(high.get(), POLLIN), POLLIN);
  }
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
}

TEST_P(DescriptorWaitTest, ServesTerminals) {
  int ends[2];
  ASSERT_EQ(::openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr), 0);
  const FileDescriptor terminal(ends[0]);
  FileDescriptor program(ends[1]);
  EXPECT_EQ(wait(terminal.get(), POLLIN | POLLOUT), POLLOUT);
  ASSERT_EQ(::write(terminal.get(), "word\n", 5), 5);
  EXPECT_EQ(wait(program.get(), POLLIN), POLLIN);
  program = FileDescriptor();
  EXPECT_NE(wait(terminal.get(), POLLIN), 0);
}

INSTANTIATE_TEST_SUITE_P(Ways, DescriptorWaitTest, ::testing::Values(&waitFor, &selectWait),
                         [](const auto& way) {
                           return way.param == &selectWait ? "select" : "ofTheSystem";
                         });

TEST(Pipe, IsNotForProgramsThatAreStarted) {
  for (const auto mode : {PipeMode::waiting, PipeMode::nonBlocking}) {
    const auto pipe = openPipe(mode).value();
    for (const int end : {pipe.reader.get(), pipe.writer.get()}) {
      EXPECT_EQ(::fcntl(end, F_GETFD), FD_CLOEXEC);
      EXPECT_EQ((::fcntl(end, F_GETFL) & O_NONBLOCK) != 0, mode == PipeMode::nonBlocking);
    }
    ASSERT_EQ(::write(pipe.writer.get(), "x", 1), 1);
    std::array<char, 2> read{};
    EXPECT_EQ(::read(pipe.reader.get(), read.data(), read.size()), 1);
  }
}

}  // namespace
}  // namespace tessarok::posix
