#include <atomic>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <numeric>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "desktops/posix/ThreadQueue.h"

namespace tessarok {
namespace {

TEST(ThreadQueue, RunsJobsInTheOrderOfTheirSubmission) {
  std::vector<int> done;
  posix::ThreadQueue queue;
  for (int i = 0; i < 1000; ++i)
    queue.async([&done, i] { done.push_back(i); });
  queue.drain();
  std::vector<int> expected(1000);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(done, expected);
}

TEST(ThreadQueue, DrainingWaitsForTheJobInHand) {
  std::promise<void> started;
  std::promise<void> mayEnd;
  std::atomic<bool> ended = false;
  posix::ThreadQueue queue;
  queue.async([&] {
    started.set_value();
    mayEnd.get_future().wait();
    ended = true;
  });
  started.get_future().wait();
  std::thread other([&] { mayEnd.set_value(); });
  queue.drain();
  EXPECT_TRUE(ended);
  other.join();
}

/// The stack of a new thread finds no room any more.
void forbidThreads() {
  std::ifstream sizes("/proc/self/statm");
  rlim_t pages = 0;
  sizes >> pages;
  const auto inUse = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
  const rlimit limit{inUse + 1024 * 1024, RLIM_INFINITY};
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &limit), 0);
}

TEST(ThreadQueue, WithoutAThreadJobsRunWhereTheyAreSubmitted) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer itself needs the memory";
#endif
  std::vector<int> done;
  posix::ThreadQueue queue;
  forbidThreads();
  for (int i = 0; i < 3; ++i)
    queue.async([&done, i] { done.push_back(i); });
  EXPECT_EQ(done, (std::vector{0, 1, 2}));
  queue.drain();
  // As soon as there is one, it is used.
  const rlimit unlimited{RLIM_INFINITY, RLIM_INFINITY};
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &unlimited), 0);
  std::thread::id worker;
  queue.async([&worker] { worker = std::this_thread::get_id(); });
  queue.drain();
  EXPECT_NE(worker, std::thread::id());
  EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(ThreadQueue, DrainingAnUnusedQueueReturnsAtOnce) {
  posix::ThreadQueue queue;
  queue.drain();
}

TEST(ThreadQueue, DestructionFinishesEveryJob) {
  int done = 0;
  {
    posix::ThreadQueue queue;
    for (int i = 0; i < 100; ++i)
      queue.async([&done] { ++done; });
  }
  EXPECT_EQ(done, 100);
}

TEST(ThreadQueue, AJobMaySubmitAnother) {
  std::vector<int> done;
  posix::ThreadQueue queue;
  queue.async([&] {
    done.push_back(1);
    queue.async([&done] { done.push_back(2); });
  });
  queue.drain();
  EXPECT_EQ(done, (std::vector<int>{1, 2}));
}

TEST(ThreadQueue, JobsRunOnOneThreadThatIsNotTheCallers) {
  std::vector<std::thread::id> threads;
  posix::ThreadQueue queue;
  for (int i = 0; i < 3; ++i)
    queue.async([&] { threads.push_back(std::this_thread::get_id()); });
  queue.drain();
  EXPECT_EQ(threads, std::vector<std::thread::id>(3, threads.front()));
  EXPECT_NE(threads.front(), std::this_thread::get_id());
}

}  // namespace
}  // namespace tessarok
