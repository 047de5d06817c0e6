#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <string>
#include <unistd.h>

#include "desktops/posix/WriteQueue.h"

namespace tessarok::posix {
namespace {

class WriteQueueTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ::signal(SIGPIPE, SIG_IGN);
    ASSERT_EQ(::pipe2(ends_, O_CLOEXEC), 0);
    ASSERT_EQ(::fcntl(ends_[0], F_SETFL, O_NONBLOCK), 0);
  }
  void TearDown() override {
    ::close(ends_[0]);
    ::close(ends_[1]);
  }
  std::string read() const {
    std::string text(256 * 1024, '\0');
    const auto count = ::read(ends_[0], text.data(), text.size());
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
  }

  int ends_[2] = {-1, -1};
};

TEST_F(WriteQueueTest, KeepsWhatCannotBeWrittenYet) {
  // The pipe is in blocking mode: flush must not be caught in it.
  WriteQueue queue(ends_[1]);
  std::string sent;
  for (int i = 0; !queue.isFull(); ++i) {
    sent += std::to_string(i) + " ";
    queue.add(std::to_string(i) + " ");
    if (i % 1000 == 0) {
      ASSERT_TRUE(queue.flush());
    }
  }
  std::string received;
  while (!queue.isEmpty()) {
    ASSERT_TRUE(queue.flush());
    received += read();
  }
  received += read();
  EXPECT_EQ(received, sent);
}

TEST_F(WriteQueueTest, OfANonBlockingDescriptorKeepsWhatCannotBeWrittenYet) {
  ASSERT_EQ(::fcntl(ends_[1], F_SETFL, O_NONBLOCK), 0);
  WriteQueue queue(ends_[1], WriteQueue::Mode::nonBlocking);
  const std::string sent(200 * 1000, 'x');
  queue.add(sent);
  ASSERT_TRUE(queue.flush());
  EXPECT_FALSE(queue.isEmpty());
  std::string received;
  while (!queue.isEmpty()) {
    received += read();
    ASSERT_TRUE(queue.flush());
  }
  received += read();
  EXPECT_EQ(received, sent);
}

TEST_F(WriteQueueTest, SaysWhenNobodyReadsAnyMore) {
  WriteQueue queue(ends_[1]);
  ::close(ends_[0]);
  ends_[0] = -1;
  queue.add("text");
  EXPECT_FALSE(queue.flush());
  EXPECT_TRUE(queue.isEmpty());
  EXPECT_FALSE(queue.flushWaiting());
}

}  // namespace
}  // namespace tessarok::posix
