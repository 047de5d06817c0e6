// When a worker that the alarm has rung for counts as one that hangs, look by look.

#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

#include "desktops/x11/Suspicion.h"

namespace tessarok::testing {
namespace {

using x11::Suspicion;
using x11::ThreadTimes;

constexpr long long kMillisecond = 1'000'000;
/// Two hundred looks are twenty seconds.
constexpr int kForEver = 200;

/// The look at which it is confirmed, the first being 1; 0 when it is not for so many.
template <typename LookAt>
int confirmation(LookAt lookAt, int looks = kForEver) {
  Suspicion suspicion;
  for (int look = 1; look <= looks; ++look) {
    if (suspicion.isConfirmedBy(lookAt(look))) return look;
  }
  return 0;
}

ThreadTimes times(long long ran, long long queued, bool isAsleep) {
  return {.ran = ran, .queued = queued, .isAsleep = isAsleep};
}

TEST(Suspicion, OneThatSleepsWhileTheServerAnswersHangs) {
  const auto sleeps = [](int) { return Suspicion::Look{times(5, 5, true), true}; };
  EXPECT_EQ(confirmation(sleeps), 4);
}

TEST(Suspicion, OneThatIsBusyHangsAndTheServerDoesNotMatter) {
  for (const bool answers : {true, false}) {
    const auto isBusy = [answers](int look) {
      return Suspicion::Look{times(look * 100 * kMillisecond, 0, false), answers};
    };
    EXPECT_EQ(confirmation(isBusy), 4);
  }
}

TEST(Suspicion, OneThatIsBusyBesideMuchElseIsFoundOutWhenItHasWorkedAsMuch) {
  const auto isBusy = [](int look) {
    return Suspicion::Look{times(look * 10 * kMillisecond, look * 90 * kMillisecond, false), true};
  };
  EXPECT_EQ(confirmation(isBusy), 8);
}

TEST(Suspicion, OneThatWaitsForTheServerIsWaitedForToo) {
  const auto waits = [](int) { return Suspicion::Look{times(5, 5, true), false}; };
  EXPECT_EQ(confirmation(waits), 0);
}

TEST(Suspicion, AnAnswerThatDoesNotWakeItIsASign) {
  const auto waits = [](int look) { return Suspicion::Look{times(5, 5, true), look > 30}; };
  EXPECT_EQ(confirmation(waits), 33);
}

TEST(Suspicion, OneThatWaitsForAProcessorOrForTheDiskHasFiveSeconds) {
  const auto waits = [](int look) { return Suspicion::Look{times(5, look, false), true}; };
  EXPECT_EQ(confirmation(waits), 51);
  const auto reads = [](int) { return Suspicion::Look{times(5, 5, false), true}; };
  EXPECT_EQ(confirmation(reads), 51);
}

TEST(Suspicion, OneThatWokeBetweenTwoLooksHasFiveSeconds) {
  const auto wakes = [](int look) { return Suspicion::Look{times(look, 5, true), true}; };
  EXPECT_EQ(confirmation(wakes), 51);
}

TEST(Suspicion, WhereTheSystemDoesNotTellTimeCounts) {
  const auto isUnknown = [](int) { return Suspicion::Look{std::nullopt, false}; };
  EXPECT_EQ(confirmation(isUnknown), 4);
}

TEST(ThreadTimes, TellAThreadThatSleepsFromOneThatWorks) {
  const auto none = ThreadTimes::ofMainThread(-1);
  EXPECT_FALSE(none);
  const auto before = ThreadTimes::ofMainThread(::getpid());
  if (!before) GTEST_SKIP() << "the system does not count";
  EXPECT_FALSE(before->isAsleep);
  while (ThreadTimes::ofMainThread(::getpid())->ran < before->ran + kMillisecond) {
  }
  std::optional<ThreadTimes> asleep;
  std::thread other([&] {
    do
      asleep = ThreadTimes::ofMainThread(::getpid());
    while (!asleep->isAsleep);
  });
  other.join();
  EXPECT_GT(asleep->ran, before->ran);
}

}  // namespace
}  // namespace tessarok::testing
