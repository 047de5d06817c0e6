#include <algorithm>
#include <cmath>
#include <csignal>
#include <dispatch/dispatch.h>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "desktops/macos/CfString.h"
#include "desktops/macos/MacAccessibility.h"
#include "desktops/macos/MacClock.h"
#include "desktops/macos/MacInputSourceNotifications.h"
#include "desktops/macos/MacKeyboard.h"
#include "desktops/macos/MacRunLoop.h"
#include "desktops/macos/MacSecureInput.h"
#include "desktops/macos/MacSerialQueues.h"
#include "desktops/macos/MacUserDefaults.h"
#include "desktops/macos/TerminationSignals.h"
#include "tests/desktops/macos/fake/FakeConstants.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::macos {
namespace {

using fakemac::fakeSystem;
using fakemac::liveObjects;
using fakemac::Number;
using fakemac::String;

CFStringRef newString(const char* text) {
  return fakemac::refTo<CFStringRef>(new String(text));
}

TEST(CfRef, OwnsOneReference) {
  {
    auto adopted = CfRef<CFStringRef>::adopt(newString("a"));
    EXPECT_EQ(fakemac::objectOf(adopted.get()).references, 1);
    const auto retained = CfRef<CFStringRef>::retain(adopted.get());
    EXPECT_EQ(fakemac::objectOf(adopted.get()).references, 2);
    const auto moved = std::move(adopted);
    EXPECT_EQ(fakemac::objectOf(moved.get()).references, 2);
    auto assigned = CfRef<CFStringRef>::adopt(newString("b"));
    assigned = CfRef<CFStringRef>::adopt(newString("c"));
    EXPECT_EQ(cfString::text(assigned.get()), "c");
  }
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(CfRef, NullIsNothingToOwn) {
  EXPECT_FALSE(CfRef<CFStringRef>::adopt(nullptr));
  EXPECT_FALSE(CfRef<CFStringRef>::retain(nullptr));
}

TEST(FakeSystemDeathTest, ForgivesNothing) {
  EXPECT_DEATH(CFRelease(nullptr), "null was used as an object");
  EXPECT_DEATH(
      {
        const auto string = newString("a");
        CFRelease(string);
        CFRelease(string);
      },
      "a released object was used");
  EXPECT_DEATH(CFRelease(kCFBooleanTrue), "released too often");
  String string("a");
  EXPECT_DEATH(CFDataGetLength(fakemac::refTo<CFDataRef>(&string)), "of another type");
}

TEST(CfString, CarriesTextBothWays) {
  for (const auto* text : {"", "plain", "привет", "a𝄞b"}) {
    const auto string = cfString::make(text);
    EXPECT_EQ(cfString::text(string.get()), text);
  }
  EXPECT_FALSE(cfString::make("\xFF"));
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(CfString, WhatIsNoStringHasNoText) {
  const Number number(1);
  EXPECT_EQ(cfString::text(nullptr), std::nullopt);
  EXPECT_EQ(cfString::text(&number), std::nullopt);
}

TEST(MacAccessibility, AsksWithAndWithoutPrompt) {
  EXPECT_TRUE(MacAccessibility().isProcessTrusted(true));
  fakeSystem().trusted = false;
  EXPECT_FALSE(MacAccessibility().isProcessTrusted(false));
  EXPECT_EQ(fakeSystem().trustQuestions, (std::vector{true, false}));
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(MacSecureInput, TellsTheSystemsState) {
  EXPECT_FALSE(MacSecureInput().isEnabled());
  fakeSystem().secureInput = true;
  EXPECT_TRUE(MacSecureInput().isEnabled());
}

TEST(MacKeyboard, TellsModelAndShape) {
  using platform::PhysicalLayoutType;
  fakeSystem().keyboardType = 91;
  EXPECT_EQ(MacKeyboard().type(), 91U);
  EXPECT_EQ(MacKeyboard().layoutType(91), PhysicalLayoutType::ansi);
  fakeSystem().physicalLayout = kKeyboardISO;
  EXPECT_EQ(MacKeyboard().layoutType(91), PhysicalLayoutType::iso);
  fakeSystem().physicalLayout = kKeyboardJIS;
  EXPECT_EQ(MacKeyboard().layoutType(91), PhysicalLayoutType::jis);
  constexpr PhysicalKeyboardLayoutType kUnknown = 0x3F3F3F3F;
  fakeSystem().physicalLayout = kUnknown;
  EXPECT_EQ(MacKeyboard().layoutType(91), PhysicalLayoutType::ansi);
}

TEST(MacKeyboard, TellsTheAgeOfTheLastKey) {
  EXPECT_TRUE(std::isinf(MacKeyboard().secondsSinceLastKeyDown()));
  fakeSystem().lastKeyDownAt = fakeSystem().uptime - 2.5;
  EXPECT_EQ(MacKeyboard().secondsSinceLastKeyDown(), 2.5);
}

TEST(MacClock, TellsTheUptime) {
  fakeSystem().uptime = 12.25;
  EXPECT_EQ(MacClock().uptime(), 12.25);
}

TEST(TerminationSignals, EndTheProgramOnTheMainQueue) {
  int ends = 0;
  {
    const TerminationSignals signals([&] { ++ends; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
      // Else the process would be gone.
      ASSERT_EQ(raise(signal), 0);
      fakeSystem().raiseSignal(signal);
    }
    EXPECT_EQ(ends, 0);
    fakeSystem().runMainQueue();
    EXPECT_EQ(ends, 3);
  }
  EXPECT_TRUE(fakeSystem().signalSources.empty());
  EXPECT_EXIT(static_cast<void>(raise(SIGTERM)), testing::KilledBySignal(SIGTERM), "");
}

TEST(TerminationSignals, WhatIsIgnoredFromTheStartStaysIgnored) {
  ASSERT_NE(std::signal(SIGHUP, SIG_IGN), SIG_ERR);
  {
    const TerminationSignals signals([] {});
    EXPECT_EQ(fakeSystem().signalSources.size(), 2U);
  }
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(TerminationSignals, AreLeftAloneWhenTheyCannotBeWatched) {
  fakeSystem().failsSignalSources = true;
  const TerminationSignals signals([] {});
  EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_DFL);
}

TEST(MacRunLoop, RunsOnTheMainQueueNowAndLater) {
  MacRunLoop loop;
  std::vector<double> ranAt;
  const auto note = [&] { ranAt.push_back(fakeSystem().uptime); };
  loop.async(note);
  EXPECT_TRUE(ranAt.empty());
  fakeSystem().runMainQueue();
  loop.after(5.1, note);
  fakeSystem().advance(5);
  EXPECT_EQ(ranAt.size(), 1U);
  fakeSystem().advance(0.5);
  ASSERT_EQ(ranAt.size(), 2U);
  EXPECT_DOUBLE_EQ(ranAt[1], 1005.1);
}

TEST(MacRunLoop, RepeatsWithTolerance) {
  int count = 0;
  auto timer = MacRunLoop().repeating(2, 0.5, [&] { ++count; });
  ASSERT_EQ(fakeSystem().timers.size(), 1U);
  EXPECT_EQ(fakeSystem().timers.front()->interval, 2);
  EXPECT_EQ(fakeSystem().timers.front()->tolerance, 0.5);
  fakeSystem().advance(1.9);
  EXPECT_EQ(count, 0);
  fakeSystem().advance(4.1);
  EXPECT_EQ(count, 3);
  timer.reset();
  fakeSystem().advance(10);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(MacRunLoop, ATimerMayEndItself) {
  std::unique_ptr<platform::Timer> timer;
  timer = MacRunLoop().repeating(1, 0, [&] { timer.reset(); });
  fakeSystem().advance(5);
  EXPECT_EQ(timer, nullptr);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(MacInputSourceNotifications, ObservesBothUntilDestroyed) {
  MacInputSourceNotifications centre;
  int selected = 0;
  int enabled = 0;
  auto first =
      centre.observe(platform::Notification::selectedInputSourceChanged, [&] { ++selected; });
  const auto second =
      centre.observe(platform::Notification::enabledInputSourcesChanged, [&] { ++enabled; });
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  fakeSystem().announce(kTISNotifySelectedKeyboardInputSourceChanged);
  fakeSystem().announce(kTISNotifyEnabledKeyboardInputSourcesChanged);
  first.reset();
  fakeSystem().announce(kTISNotifySelectedKeyboardInputSourceChanged);
  EXPECT_EQ(selected, 1);
  EXPECT_EQ(enabled, 1);
}

TEST(MacInputSourceNotifications, WhatTheSystemDoesNotKnowIsNotObserved) {
  MacInputSourceNotifications centre;
  EXPECT_EQ(centre.observe(platform::Notification::willSleep, [] {}), nullptr);
  fakeSystem().hasDistributedCentre = false;
  EXPECT_EQ(centre.observe(platform::Notification::enabledInputSourcesChanged, [] {}), nullptr);
  fakeSystem().hasDistributedCentre = true;
  fakemac::forgetSelectedChangedConstant();
  EXPECT_EQ(centre.observe(platform::Notification::selectedInputSourceChanged, [] {}), nullptr);
  EXPECT_TRUE(fakeSystem().observers.empty());
}

TEST(MacUserDefaults, RemembersSwitches) {
  MacUserDefaults defaults;
  EXPECT_EQ(defaults.boolean("pack.it"), std::nullopt);
  defaults.setBoolean("pack.it", true);
  EXPECT_EQ(defaults.boolean("pack.it"), true);
  defaults.setBoolean("pack.it", false);
  EXPECT_EQ(defaults.boolean("pack.it"), false);
  EXPECT_EQ(fakeSystem().preferences.at("pack.it"), kCFBooleanFalse);
  EXPECT_EQ(fakeSystem().synchronisations, 2);
  EXPECT_EQ(liveObjects(), 0U);
}

// The commands want to know the application's switches, and are no application.
TEST(MacUserDefaults, AreAlsoFoundByTheNameOfTheApplication) {
  fakeSystem().bundleIdentifier = "app.tessarok";
  MacUserDefaults().setBoolean("pack.it", false);
  EXPECT_EQ(MacUserDefaults("app.tessarok").boolean("pack.it"), false);
  EXPECT_EQ(MacUserDefaults("app.tessarok").boolean("pack.chat"), std::nullopt);
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(MacUserDefaults, UnderstandsWhatPeopleWriteByHand) {
  const auto read = [](CFTypeRef value) {
    fakeSystem().setPreference("key", value);
    return MacUserDefaults().boolean("key");
  };
  for (const auto* yes : {"YES", "yes", "true", "1", " t", "-3", "007"})
    EXPECT_EQ(read(newString(yes)), true) << yes;
  for (const auto* no : {"", " ", "NO", "false", "0", "+", "on"})
    EXPECT_EQ(read(newString(no)), false) << no;
  EXPECT_EQ(read(new Number(0)), false);
  EXPECT_EQ(read(new Number(0.5)), true);
  EXPECT_EQ(read(new fakemac::Data({1})), false);
  // The preferences hold the last value, and nobody holds another.
  EXPECT_EQ(liveObjects(), 1U);
  EXPECT_EQ(fakemac::objectOf(fakeSystem().preferences.at("key")).references, 1);
}

TEST(MacSerialQueues, RunJobsInOrderOnAnotherThread) {
  const auto caller = std::this_thread::get_id();
  std::vector<int> done;
  const auto queue = MacSerialQueues().create("app.tessarok.test");
  EXPECT_EQ(fakeSystem().queueLabels, std::vector<std::string>{"app.tessarok.test"});
  for (int i = 0; i < 100; ++i) {
    queue->async([&, i] {
      EXPECT_NE(std::this_thread::get_id(), caller);
      done.push_back(i);
    });
  }
  queue->drain();
  ASSERT_EQ(done.size(), 100U);
  EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
}

TEST(MacSerialQueues, AQueueFinishesItsJobsBeforeItGoes) {
  bool isDone = false;
  {
    const auto queue = MacSerialQueues().create("app.tessarok.test");
    queue->async([&] { isDone = true; });
  }
  EXPECT_TRUE(isDone);
}

TEST(MacSerialQueuesDeathTest, AReleasedQueueIsGone) {
  auto* const queue = dispatch_queue_create("a", DISPATCH_QUEUE_SERIAL);
  dispatch_release(queue);
  EXPECT_DEATH(dispatch_sync_f(queue, nullptr, [](void*) {}), "does not exist");
}

}  // namespace
}  // namespace tessarok::macos
