#include <gtest/gtest.h>
#include <signal.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessApplication.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/TestFiles.h"

namespace tessarok::posix {
namespace {

class RunningCopies : public ::testing::Test {
 protected:
  std::vector<platform::RunningApplication> running(const std::string& lock) {
    const auto file = folder_.path() / "instance.lock";
    if (!lock.empty()) tessarok::testing::writeFile(file, lock);
    return ProcessApplication(loop_, file).running("app.tessarok");
  }

  virtualdesktop::TemporaryDirectory folder_;
  MonotonicClock clock_;
  PollLoop loop_{clock_};
};

TEST_F(RunningCopies, AreThisOneAlone) {
  const auto alone = running("");
  ASSERT_EQ(alone.size(), 1u);
  EXPECT_EQ(alone[0].processIdentifier, ::getpid());
  ASSERT_TRUE(alone[0].launchDate);
  EXPECT_GT(*alone[0].launchDate, 0);
  // Nor does the file of this process, of another program, or of nobody, name a second one.
  EXPECT_EQ(running(std::to_string(::getpid())).size(), 1u);
  EXPECT_EQ(running(std::to_string(::getppid())).size(), 1u);
  EXPECT_EQ(running("no number").size(), 1u);
}

TEST_F(RunningCopies, IncludeTheOneThatHoldsTheLock) {
  const auto file = folder_.path() / "instance.lock";
  const auto copy = ::fork();
  ASSERT_GE(copy, 0);
  if (copy == 0) {
    const auto lock = PosixFiles(folder_.path(), std::nullopt).lockExclusively(file);
    ::kill(::getpid(), SIGSTOP);
    ::_exit(0);
  }
  ::waitpid(copy, nullptr, WUNTRACED);
  // Whatever the file says.
  const auto both = running("1\n");
  ::kill(copy, SIGKILL);
  ::waitpid(copy, nullptr, 0);
  ASSERT_EQ(both.size(), 2u);
  EXPECT_EQ(both[1].processIdentifier, copy);
  ASSERT_TRUE(both[1].launchDate);
  EXPECT_GE(*both[1].launchDate, *both[0].launchDate);
  EXPECT_EQ(running("").size(), 1u);
}

TEST_F(RunningCopies, DoNotIncludeAProgramThatHasTheNumberOfOneThatCrashed) {
  const auto other = ::fork();
  ASSERT_GE(other, 0);
  if (other == 0) {
    ::pause();
    ::_exit(0);
  }
  // Of the same name even; but it holds no lock.
  EXPECT_EQ(running(std::to_string(other) + "\n").size(), 1u);
  ::kill(other, SIGKILL);
  ::waitpid(other, nullptr, 0);
}

TEST_F(RunningCopies, AreNotWaitedForWhenTheLockIsAPipe) {
  ASSERT_EQ(::mkfifo((folder_.path() / "instance.lock").c_str(), 0600), 0);
  EXPECT_EQ(running("").size(), 1u);
}

}  // namespace
}  // namespace tessarok::posix
