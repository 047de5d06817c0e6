#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <utility>
#include <vector>

#include "desktops/macos/MacEvent.h"
#include "desktops/macos/MacEventTaps.h"
#include "desktops/macos/MacRunLoop.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::macos {
namespace {

using fakemac::Event;
using fakemac::fakeSystem;
using platform::EventType;

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
  EXPECT_EQ(request.userInfo, this);
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

TEST_F(MacEventTapTest, WhatIsPostedFollowsTheEventInHand) {
  callback = [](platform::EventTapProxy* proxy, EventType, platform::Event* event) {
    if (event->sourceUserData() == 5) return event;
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
  EXPECT_EQ(userData, (std::vector<std::int64_t>{0, 5, 0, 5}));
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

TEST(MacEventTaps, WithoutPermissionThereIsNoTap) {
  fakeSystem().trusted = false;
  EXPECT_EQ(MacEventTaps().create(kKeys, nullptr, nullptr), nullptr);
  EXPECT_EQ(fakemac::liveObjects(), 0U);
}

TEST(MacEventTaps, AsksWhetherItMayPost) {
  EXPECT_TRUE(MacEventTaps().preflightPostAccess());
  fakeSystem().mayPost = false;
  EXPECT_FALSE(MacEventTaps().preflightPostAccess());
}

}  // namespace
}  // namespace tessarok::macos
