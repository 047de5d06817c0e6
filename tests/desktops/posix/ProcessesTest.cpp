#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "desktops/posix/Processes.h"

namespace tessarok::posix {
namespace {

TEST(Processes, AreKnownByTheirProgram) {
  const auto file = programFileOf(::getpid());
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->is_absolute());
  EXPECT_EQ(file->filename(), "tessarok_posix_tests");
  EXPECT_EQ(programNameOf(::getpid()), "tessarok_posix_");
}

TEST(Processes, OfOthersHaveANameAtLeast) {
  EXPECT_NE(programNameOf(::getppid()), "");
}

TEST(Processes, TellWhenTheyWereStarted) {
  const auto child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::pause();
    ::_exit(0);
  }
  const auto own = launchDateOf(::getpid());
  const auto later = launchDateOf(child);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  ASSERT_TRUE(own && later);
  EXPECT_GE(*later, *own);
  // And nothing is told of one that has ended.
  EXPECT_FALSE(launchDateOf(child));
  EXPECT_FALSE(programFileOf(child));
  EXPECT_EQ(programNameOf(child), "");
}

}  // namespace
}  // namespace tessarok::posix
