#include <algorithm>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <utility>
#include <vector>

#include "desktops/macos/MacEvent.h"
#include "desktops/macos/MacEventTaps.h"
#include "desktops/macos/MacEvents.h"
#include "desktops/macos/MacRunLoop.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::macos {
namespace {

using fakemac::Event;
using fakemac::fakeSystem;
using platform::EventType;

/// The system announces every change of the Accessibility permissions under this name.
constexpr const char* kPermissionsChanged = "com.apple.accessibility.api";
constexpr CGEventMask kKeys = (1 << kCGEventKeyDown) | (1 << kCGEventKeyUp);

/// A tap on the main run loop whose callback is a function of the test's.
class MacEventTapTest : public testing::Test {
 protected:
  using Callback =
      std::function<platform::Event*(platform::EventTapProxy*, EventType, platform::Event*)>;

  void SetUp() override {
    fakeSystem().onDelivered = [this](const Event& event) { delivered.push_back(event.keyCode); };
    tap = MacEventTaps().create(kKeys, &MacEventTapTest::call, this);
    ASSERT_NE(tap, nullptr);
    source = tap->createRunLoopSource(0);
    ASSERT_NE(source, nullptr);
    loop.add(*source);
    tap->enable(true);
  }
  void TearDown() override {
    if (tap) tap->invalidate();
    if (source) loop.remove(*source);
    tap.reset();
    source.reset();
    EXPECT_EQ(fakemac::liveObjects(), 0U);
  }

  static platform::Event* call(platform::EventTapProxy* proxy, EventType type,
                               platform::Event* event, void* userData) {
    auto& test = *static_cast<MacEventTapTest*>(userData);
    test.types.push_back(type);
    return test.callback ? test.callback(proxy, type, event) : event;
  }

  static void press(std::int64_t code) {
    Event event;
    event.keyCode = code;
    fakeSystem().send(event);
  }

  MacRunLoop loop;
  std::unique_ptr<platform::EventTap> tap;
  std::unique_ptr<platform::RunLoopSource> source;
  Callback callback;
  std::vector<EventType> types;
  std::vector<std::int64_t> delivered;
};

using MacEventTapDeathTest = MacEventTapTest;

TEST_F(MacEventTapTest, IsAnActiveTapAtTheHeadOfTheSession) {
  ASSERT_EQ(fakeSystem().tapRequests.size(), 1U);
  const auto& request = fakeSystem().tapRequests.front();
  EXPECT_EQ(request.location, kCGSessionEventTap);
  EXPECT_EQ(request.placement, kCGHeadInsertEventTap);
  EXPECT_EQ(request.options, kCGEventTapOptionDefault);
  EXPECT_EQ(request.mask, kKeys);
  EXPECT_NE(request.userInfo, nullptr);
  ASSERT_EQ(fakeSystem().sources.size(), 1U);
  EXPECT_EQ(fakeSystem().sources.front()->order, 0);
}

TEST_F(MacEventTapTest, EventsPassOrAreSwallowed) {
  callback = [](auto*, EventType, platform::Event* event) {
    return event->keyCode() == 1 ? nullptr : event;
  };
  press(1);
  press(2);
  EXPECT_EQ(types, (std::vector{EventType::keyDown, EventType::keyDown}));
  EXPECT_EQ(delivered, std::vector<std::int64_t>{2});
}

TEST_F(MacEventTapTest, WhatIsPostedEntersBeforeTheEventInHandAndUnseen) {
  callback = [](platform::EventTapProxy* proxy, EventType, platform::Event* event) {
    const auto posted = event->copy();
    posted->setSourceUserData(5);
    proxy->post(*posted);
    // Too late to show.
    posted->setSourceUserData(6);
    return event;
  };
  std::vector<std::int64_t> userData;
  fakeSystem().onDelivered = [&](const Event& event) { userData.push_back(event.userData); };
  press(1);
  press(1);
  EXPECT_EQ(userData, (std::vector<std::int64_t>{5, 0, 5, 0}));
  EXPECT_EQ(types.size(), 2U);
}

TEST_F(MacEventTapTest, EachTapHasItsOwnCallback) {
  const auto pass = [](platform::EventTapProxy*, EventType, platform::Event* event, void*) {
    return event;
  };
  tap->invalidate();
  const auto other = MacEventTaps().create(kKeys, pass, nullptr);
  loop.remove(*source);
  source = other->createRunLoopSource(0);
  loop.add(*source);
  press(1);
  EXPECT_TRUE(types.empty());
  EXPECT_EQ(delivered, std::vector<std::int64_t>{1});
}

TEST_F(MacEventTapTest, MayEndInItsOwnCall) {
  callback = [this](auto*, EventType, platform::Event* event) {
    tap.reset();
    return event;
  };
  press(1);
  EXPECT_EQ(delivered, std::vector<std::int64_t>{1});
}

TEST_F(MacEventTapTest, ADisabledTapIsToldWithoutAnEvent) {
  bool hadEvent = true;
  callback = [&](auto*, EventType, platform::Event* event) {
    hadEvent = event != nullptr;
    tap->enable(true);
    return event;
  };
  fakeSystem().disableTap(kCGEventTapDisabledByTimeout);
  EXPECT_FALSE(hadEvent);
  EXPECT_TRUE(tap->isEnabled());
  fakeSystem().disableTap(kCGEventTapDisabledByUserInput);
  EXPECT_EQ(types,
            (std::vector{EventType::tapDisabledByTimeout, EventType::tapDisabledByUserInput}));
}

TEST_F(MacEventTapTest, APseudoEventMayComeWithAnEvent) {
  bool hadEvent = false;
  callback = [&](auto*, EventType, platform::Event* event) {
    hadEvent = event != nullptr;
    return event;
  };
  fakeSystem().disableTap(kCGEventTapDisabledByTimeout, true);
  EXPECT_TRUE(hadEvent);
  EXPECT_EQ(types, std::vector{EventType::tapDisabledByTimeout});
}

TEST_F(MacEventTapTest, EnablesAndDisables) {
  tap->enable(false);
  EXPECT_FALSE(tap->isEnabled());
  press(1);
  EXPECT_TRUE(types.empty());
  EXPECT_EQ(delivered, std::vector<std::int64_t>{1});
  tap->enable(true);
  EXPECT_TRUE(tap->isEnabled());
}

TEST_F(MacEventTapTest, ADestroyedTapIsNotCalledThoughItsSourceLives) {
  tap.reset();
  press(1);
  EXPECT_TRUE(types.empty());
  EXPECT_EQ(delivered, std::vector<std::int64_t>{1});
}

TEST_F(MacEventTapTest, WithoutUserInfoTheEventPasses) {
  Event event;
  const auto reference = fakemac::refTo<CGEventRef>(&event);
  EXPECT_EQ(fakeSystem().tap->callback(nullptr, kCGEventKeyDown, reference, nullptr), reference);
  EXPECT_TRUE(types.empty());
}

TEST_F(MacEventTapTest, ARefusedRunLoopSourceIsNull) {
  fakeSystem().failsNextRunLoopSource = true;
  EXPECT_EQ(tap->createRunLoopSource(0), nullptr);
}

TEST_F(MacEventTapDeathTest, TheProxyEndsWithTheCallback) {
  CGEventTapProxy kept = nullptr;
  callback = [&](auto*, EventType, platform::Event* event) {
    kept = fakeSystem().proxy;
    return event;
  };
  press(1);
  ASSERT_NE(kept, nullptr);
  Event late;
  EXPECT_DEATH(CGEventTapPostEvent(kept, fakemac::refTo<CGEventRef>(&late)),
               "the proxy of no running callback");
}

TEST_F(MacEventTapTest, IsGivenUpWhereItIsLookedAtWithoutPermission) {
  fakeSystem().takePermission();
  EXPECT_FALSE(tap->isEnabled());
  EXPECT_EQ(fakeSystem().tapCalls.back(), "invalidate");
  // Nobody was asked anything.
  EXPECT_EQ(
      std::count(fakeSystem().trustQuestions.begin(), fakeSystem().trustQuestions.end(), true), 0);
}

TEST_F(MacEventTapTest, IsNotEnabledWithoutPermission) {
  callback = [this](auto*, EventType, platform::Event* event) {
    tap->enable(true);
    return event;
  };
  fakeSystem().takePermission();
  fakeSystem().disableTap(kCGEventTapDisabledByUserInput);
  EXPECT_EQ(fakeSystem().tapCalls.back(), "invalidate");
}

TEST_F(MacEventTapTest, IsGivenUpWhenTheSystemAnnouncesTheChange) {
  fakeSystem().takePermission();
  press(1);
  EXPECT_TRUE(delivered.empty());
  fakeSystem().announce(kPermissionsChanged);
  EXPECT_EQ(delivered, std::vector<std::int64_t>{1});
  EXPECT_EQ(fakeSystem().tapCalls.back(), "invalidate");
  fakeSystem().advance(1);
}

TEST_F(MacEventTapTest, TheAnswerMayComeALittleAfterTheAnnouncement) {
  fakeSystem().announce(kPermissionsChanged);
  EXPECT_TRUE(tap->isEnabled());
  fakeSystem().takePermission();
  press(1);
  fakeSystem().advance(0.2);
  EXPECT_EQ(delivered, std::vector<std::int64_t>{1});
  fakeSystem().advance(1);
}

TEST_F(MacEventTapTest, AnotherProgramsPermissionChangesNothing) {
  fakeSystem().announce(kPermissionsChanged);
  fakeSystem().advance(1);
  EXPECT_TRUE(tap->isEnabled());
  EXPECT_EQ(fakeSystem().tapCalls.back(), "enable");
}

TEST_F(MacEventTapTest, ADestroyedTapLooksAtNothing) {
  fakeSystem().announce(kPermissionsChanged);
  tap.reset();
  fakeSystem().trustQuestions.clear();
  fakeSystem().announce(kPermissionsChanged);
  fakeSystem().advance(1);
  EXPECT_TRUE(fakeSystem().trustQuestions.empty());
  EXPECT_TRUE(fakeSystem().observers.empty());
}

TEST_F(MacEventTapTest, AnInvalidTapIsLeftAlone) {
  tap->invalidate();
  const auto calls = fakeSystem().tapCalls;
  EXPECT_FALSE(tap->isEnabled());
  tap->enable(true);
  tap->enable(false);
  tap->invalidate();
  EXPECT_EQ(fakeSystem().tapCalls, calls);
  EXPECT_EQ(tap->createRunLoopSource(0), nullptr);
}

TEST(MacEventTaps, WithoutPermissionThereIsNoTap) {
  using Untrusted = fakemac::FakeSystem::UntrustedTap;
  fakeSystem().trusted = false;
  for (const auto kind : {Untrusted::refused, Untrusted::withoutKeys}) {
    fakeSystem().untrustedTap = kind;
    constexpr CGEventMask kClicks = 1 << kCGEventLeftMouseDown;
    EXPECT_EQ(MacEventTaps().create(kKeys | kClicks, nullptr, nullptr), nullptr);
  }
  EXPECT_EQ(fakemac::liveObjects(), 0U);
  EXPECT_TRUE(fakeSystem().observers.empty());
}

TEST(MacEventTaps, ARefusedTapIsNull) {
  fakeSystem().failsNextTap = true;
  EXPECT_EQ(MacEventTaps().create(kKeys, nullptr, nullptr), nullptr);
  EXPECT_EQ(fakemac::liveObjects(), 0U);
}

class OtherSource final : public platform::EventSource {};

TEST(MacEventTapsDeathTest, WhatIsAnotherDesktopsStopsTheProgram) {
  OtherSource source;
  EXPECT_EXIT(static_cast<void>(MacEvents().createKeyboardEvent(source, 0, true)),
              testing::KilledBySignal(SIGABRT), "^$");
}

TEST(MacEventTaps, AsksWhetherItMayPost) {
  EXPECT_TRUE(MacEventTaps().preflightPostAccess());
  fakeSystem().mayPost = false;
  EXPECT_FALSE(MacEventTaps().preflightPostAccess());
}

}  // namespace
}  // namespace tessarok::macos
