// The tap and its watchdog.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "desktops/virtual/VirtualEvent.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/HandClock.h"
#include "tests/support/TestFiles.h"
#include "typing/DiagnosticLog.h"
#include "typing/KeyTap.h"

namespace tessarok {
namespace {

using platform::EventType;
using testing::FakeDesktop;
using testing::HandClock;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

/// A tap that asks for no place in the run loop, if told so, and that tests call themselves.
class PlainTaps final : public platform::EventTaps {
 public:
  std::unique_ptr<platform::EventTap> create(std::uint64_t askedMask,
                                             platform::EventTapCallback askedCallback,
                                             void*) override {
    mask = askedMask;
    callback = askedCallback;
    return std::make_unique<Tap>(*this);
  }
  bool preflightPostAccess() override { return false; }

  std::uint64_t mask = 0;
  platform::EventTapCallback callback = nullptr;
  bool hasSource = true;
  /// The places in the order of the run loop's sources that were asked for.
  std::vector<int> orders;
  std::vector<std::string> calls;

 private:
  class Source final : public platform::RunLoopSource {};
  class Tap final : public platform::EventTap {
   public:
    explicit Tap(PlainTaps& taps) : taps_(taps) {}
    bool isEnabled() const override { return enabled_; }
    void enable(bool enabled) override {
      enabled_ = enabled;
      taps_.calls.push_back(enabled ? "enable" : "disable");
    }
    void invalidate() override { taps_.calls.push_back("invalidate"); }
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int order) override {
      taps_.orders.push_back(order);
      return taps_.hasSource ? std::make_unique<Source>() : nullptr;
    }

   private:
    PlainTaps& taps_;
    bool enabled_ = false;
  };
};

class KeyTapTest : public ::testing::Test {
 protected:
  KeyTapTest() { desktop.environment().variables["TESSAROK_DEBUG"] = ""; }

  /// Presses a letter that the tap sees.
  void type(const char16_t* letter) { desktop.base().keyDown({.code = 0, .characters = letter}); }
  void pressPauseKey() { desktop.base().keyDown({.code = keyCodes::grave, .characters = u"`"}); }
  void advance(double seconds) { desktop.runLoop().advance(seconds); }
  /// The lines of the log that hold this text.
  [[nodiscard]] int logged(std::string_view text) const {
    DiagnosticLog::drain();
    const auto file = desktop.home() / "tessarok.log";
    if (!std::filesystem::exists(file)) return 0;
    const auto log = testing::readFile(file);
    int count = 0;
    for (auto at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
      ++count;
    return count;
  }
  /// Whether the heartbeat recreates the tap after so much silence, with the hardware's last key
  /// so long ago.
  bool recreates(double silence, double hardware, double limit = 5.0) {
    keyTap.stop();
    keyTap.start();
    advance(silence);
    desktop.keyboard().silence = hardware;
    return keyTap.heartbeatRecreateIfStale(limit);
  }

  FakeDesktop desktop;
  KeyTap& keyTap = KeyTap::shared();
};

TEST_F(KeyTapTest, StartsATap) {
  EXPECT_FALSE(keyTap.tapExists());
  EXPECT_EQ(keyTap.lastKeyEventAt(), 0);
  EXPECT_TRUE(keyTap.start());
  EXPECT_TRUE(keyTap.tapExists());
  EXPECT_TRUE(keyTap.tapIsEnabled());
  EXPECT_EQ(keyTap.lastKeyEventAt(), desktop.clock().uptime());
  EXPECT_EQ(logged("tap started enabled=true auto=true postAccess=true dictionaries=false\n"), 1);
}

TEST_F(KeyTapTest, StartingARunningTapChangesNothing) {
  keyTap.start();
  advance(1);
  EXPECT_TRUE(keyTap.start());
  EXPECT_EQ(logged("tap started"), 1);
  EXPECT_EQ(keyTap.lastKeyEventAt(), desktop.clock().uptime() - 1);
}

TEST_F(KeyTapTest, StartingWithADisabledTapRecreatesIt) {
  keyTap.start();
  desktop.base().eventTaps().disable();
  EXPECT_TRUE(keyTap.start());
  EXPECT_TRUE(keyTap.tapIsEnabled());
  EXPECT_TRUE(keyTap.word().untrackableWord());
  EXPECT_EQ(logged("tap started"), 2);
}

TEST_F(KeyTapTest, NoTapIsStartedUnderSecureInput) {
  desktop.secureInput().on = true;
  EXPECT_FALSE(keyTap.start());
  EXPECT_FALSE(keyTap.tapExists());
  desktop.secureInput().on = false;
  EXPECT_TRUE(keyTap.start());
}

TEST_F(KeyTapTest, ATapThatCannotBeCreatedChangesNothing) {
  desktop.base().setTrusted(false);
  EXPECT_FALSE(keyTap.start());
  EXPECT_FALSE(keyTap.tapExists());
  EXPECT_EQ(keyTap.lastKeyEventAt(), 0);
  EXPECT_EQ(logged("tap started"), 0);
}

TEST_F(KeyTapTest, StoppingForgetsEverything) {
  keyTap.start();
  type(u"a");
  desktop.base().keyDown({.code = keyCodes::space, .modifiers = 0x80000});
  EXPECT_FALSE(keyTap.swallowedKeyUps().empty());
  keyTap.stop();
  EXPECT_FALSE(keyTap.tapExists());
  EXPECT_EQ(keyTap.lastKeyEventAt(), 0);
  EXPECT_TRUE(keyTap.swallowedKeyUps().empty());
  EXPECT_TRUE(keyTap.word().buffer().empty());
}

TEST_F(KeyTapTest, AWorkingTapIsNotRearmed) {
  keyTap.start();
  type(u"a");
  EXPECT_FALSE(keyTap.reArmIfDisabled());
  EXPECT_EQ(keyTap.word().buffer(), "a");
}

TEST_F(KeyTapTest, ADisabledTapIsRecreated) {
  keyTap.start();
  type(u"a");
  desktop.base().eventTaps().disable();
  EXPECT_TRUE(keyTap.reArmIfDisabled());
  EXPECT_TRUE(keyTap.tapIsEnabled());
  EXPECT_TRUE(keyTap.word().untrackableWord());
  EXPECT_EQ(logged("*** WATCHDOG: tap disabled — recreating ***\n"), 1);
}

TEST_F(KeyTapTest, ADisabledTapWithoutPermissionIsNotRecreated) {
  keyTap.start();
  desktop.base().setTrusted(false);
  EXPECT_FALSE(keyTap.reArmIfDisabled());
  EXPECT_FALSE(keyTap.tapExists());
}

TEST_F(KeyTapTest, AMissingTapIsStarted) {
  EXPECT_TRUE(keyTap.reArmIfDisabled());
  EXPECT_TRUE(keyTap.tapIsEnabled());
  EXPECT_FALSE(keyTap.word().untrackableWord());
  EXPECT_EQ(logged("WATCHDOG"), 0);
}

TEST_F(KeyTapTest, SecureInputForgetsTheWordAndStartsTheSilenceAnew) {
  keyTap.start();
  type(u"a");
  advance(10);
  desktop.secureInput().on = true;
  EXPECT_FALSE(keyTap.reArmIfDisabled());
  EXPECT_TRUE(keyTap.word().buffer().empty());
  EXPECT_EQ(keyTap.lastKeyEventAt(), desktop.clock().uptime());
  advance(10);
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  EXPECT_EQ(keyTap.lastKeyEventAt(), desktop.clock().uptime());
  desktop.secureInput().on = false;
  desktop.keyboard().silence = 1;
  advance(4);
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
}

TEST_F(KeyTapTest, TheHeartbeatNeedsSilenceAndRecentKeysOfTheHardware) {
  struct Case {
    double silence;
    double hardware;
    bool recreates;
  };
  const Case cases[] = {
      {10.0, 4.0, true},        {10.0, 5.0, true},           {10.0, 5.001, false},
      {10.0, 9.0, false},       {10.0, 0.0, true},           {10.0, -0.5, false},
      {10.0, kInfinite, false}, {10.0, std::nan(""), false}, {6.0, 4.5, false},
      {6.0, 4.0, false},        {6.0, 3.999, true},          {6.0, 0.0, true},
      {5.0, 0.0, false},        {5.001, 0.0, true},          {4.0, 0.0, false},
      {0.0, 0.0, false},        {1000.0, 1.0, true},
  };
  for (const auto& [silence, hardware, expected] : cases) {
    EXPECT_EQ(recreates(silence, hardware), expected) << silence << " s, hardware " << hardware;
  }
}

TEST_F(KeyTapTest, TheHeartbeatsLimitIsNeverBelowFiveSeconds) {
  EXPECT_FALSE(recreates(4.5, 0.5, 3.0));
  EXPECT_FALSE(recreates(5.0, 0.5, 3.0));
  EXPECT_TRUE(recreates(5.5, 0.5, 3.0));
  EXPECT_TRUE(recreates(5.5, 0.5, 5.0));
  EXPECT_FALSE(recreates(8.0, 0.5, 8.0));
  EXPECT_TRUE(recreates(8.5, 0.5, 8.0));
  EXPECT_TRUE(recreates(5.5, 0.5, -1.0));
  EXPECT_TRUE(recreates(5.5, 0.5, std::nan("")));
  EXPECT_FALSE(recreates(100.0, 0.5, kInfinite));
}

TEST_F(KeyTapTest, ARecreatedTapKnowsNothingOfTheWordUntilItsEnd) {
  EXPECT_TRUE(recreates(10.0, 1.0));
  EXPECT_TRUE(keyTap.tapIsEnabled());
  EXPECT_EQ(logged("*** WATCHDOG: hardware keystrokes missing from tap — recreating ***\n"), 1);
  EXPECT_EQ(keyTap.lastKeyEventAt(), desktop.clock().uptime());
  type(u"a");
  EXPECT_TRUE(keyTap.word().untrackableWord());
  EXPECT_TRUE(keyTap.word().buffer().empty());
  desktop.base().keyDown({.code = keyCodes::space});
  type(u"b");
  EXPECT_EQ(keyTap.word().buffer(), "b");
}

TEST_F(KeyTapTest, AKeyTheTapSawEndsTheSilence) {
  keyTap.start();
  advance(10);
  type(u"a");
  desktop.keyboard().silence = 0;
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
}

TEST_F(KeyTapTest, NothingIsRecreatedWhilePaused) {
  keyTap.start();
  pressPauseKey();
  EXPECT_EQ(keyTap.pausedUntil(), desktop.clock().uptime() + 5.0);
  advance(4.9);
  desktop.keyboard().silence = 0;
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  pressPauseKey();
  advance(4.999);
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  advance(1);
  EXPECT_TRUE(keyTap.heartbeatRecreateIfStale(5.0));
}

TEST_F(KeyTapTest, NothingIsRecreatedWhileSwitchedOff) {
  keyTap.enabled = false;
  EXPECT_FALSE(recreates(10.0, 1.0));
  keyTap.enabled = true;
  EXPECT_TRUE(keyTap.heartbeatRecreateIfStale(5.0));
}

TEST_F(KeyTapTest, TheHeartbeatLeavesMissingAndDisabledTapsAlone) {
  desktop.keyboard().silence = 1;
  advance(10);
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  EXPECT_FALSE(keyTap.tapExists());
  keyTap.start();
  advance(10);
  desktop.base().eventTaps().disable();
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  EXPECT_FALSE(keyTap.tapIsEnabled());
}

TEST_F(KeyTapTest, TheSavedSwitchOfTheShiftFixIsReadAtTheStart) {
  EXPECT_TRUE(keyTap.shiftFixEnabled);
  desktop.userDefaults().setBoolean("shiftLagFix", false);
  EXPECT_FALSE(std::make_shared<KeyTap>()->shiftFixEnabled);
  desktop.userDefaults().setBoolean("shiftLagFix", true);
  EXPECT_TRUE(std::make_shared<KeyTap>()->shiftFixEnabled);
}

TEST_F(KeyTapTest, ADestroyedKeyTapLeavesNoTap) {
  {
    const auto own = std::make_shared<KeyTap>();
    EXPECT_TRUE(own->start());
  }
  // Nobody calls the object that is gone.
  type(u"a");
  EXPECT_EQ(desktop.base().textField().text(), "a");
}

TEST_F(KeyTapTest, StartingWithADisabledTapAndWithoutPermissionFails) {
  keyTap.start();
  desktop.base().setTrusted(false);
  EXPECT_FALSE(keyTap.start());
  EXPECT_FALSE(keyTap.tapExists());
}

TEST_F(KeyTapTest, TheLogSaysWhichOfTheDictionariesIsMissing) {
  desktop.addResource("dict_en", "hello\n");
  keyTap.start();
  EXPECT_EQ(logged("dictionaries=false\n"), 1);
}

TEST_F(KeyTapTest, TheLogSaysThatBothDictionariesAreThere) {
  desktop.addResource("dict_en", "hello\n");
  desktop.addResource("dict_ru", "привет\n");
  keyTap.start();
  EXPECT_EQ(logged("dictionaries=true\n"), 1);
}

TEST_F(KeyTapTest, TheTapComesFirstInTheRunLoopAndSeesKeysAndClicks) {
  PlainTaps taps;
  desktop.replaced.eventTaps = &taps;
  EXPECT_TRUE(keyTap.start());
  EXPECT_EQ(taps.mask, 0x2000C0Au);
  EXPECT_EQ(taps.orders, std::vector<int>{0});
  EXPECT_EQ(logged("postAccess=false"), 1);
  keyTap.stop();
  EXPECT_EQ(taps.calls, (std::vector<std::string>{"enable", "disable", "invalidate"}));
}

TEST_F(KeyTapTest, ATapWithoutASourceForTheRunLoopCanBeStoppedToo) {
  PlainTaps taps;
  taps.hasSource = false;
  desktop.replaced.eventTaps = &taps;
  EXPECT_TRUE(keyTap.start());
  EXPECT_TRUE(keyTap.tapIsEnabled());
  keyTap.stop();
  EXPECT_FALSE(keyTap.tapExists());
}

TEST_F(KeyTapTest, AnEventForNobodyPasses) {
  PlainTaps taps;
  desktop.replaced.eventTaps = &taps;
  keyTap.start();
  virtualdesktop::VirtualEvent event;
  EXPECT_EQ(taps.callback(nullptr, EventType::keyDown, &event, nullptr), &event);
  EXPECT_EQ(taps.callback(nullptr, EventType::keyDown, nullptr, nullptr), nullptr);
  keyTap.stop();
}

TEST_F(KeyTapTest, ATapMadeAtTheVeryStartOfTheSystemIsNotJudgedBeforeItsFirstKey) {
  HandClock clock;
  clock.now = 0;
  desktop.replaced.clock = &clock;
  keyTap.start();
  EXPECT_EQ(keyTap.lastKeyEventAt(), 0);
  desktop.keyboard().silence = 1;
  clock.now = 10;
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  clock.now = 11;
  type(u"a");
  clock.now = 21;
  EXPECT_TRUE(keyTap.heartbeatRecreateIfStale(5.0));
}

// Time that does not go on evenly: a machine that slept may count the time or not, and what was
// due in between comes late or in a burst.

TEST_F(KeyTapTest, AClockThatCountsSleepShowsSilenceButNoKeysOfTheHardware) {
  HandClock clock;
  desktop.replaced.clock = &clock;
  keyTap.start();
  type(u"a");
  clock.now += 8 * 3600;
  // The keyboard slept as long.
  desktop.keyboard().silence = 8 * 3600;
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  // The first key after the sleep reaches the tap, so nothing is amiss.
  type(u"b");
  desktop.keyboard().silence = 0;
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  EXPECT_EQ(keyTap.word().buffer(), "ab");
}

TEST_F(KeyTapTest, AClockThatStepsBackJudgesNoTapDeaf) {
  HandClock clock;
  desktop.replaced.clock = &clock;
  keyTap.start();
  type(u"a");
  clock.now = 10;
  desktop.keyboard().silence = 0;
  EXPECT_FALSE(keyTap.heartbeatRecreateIfStale(5.0));
  EXPECT_TRUE(keyTap.tapIsEnabled());
  // From the next key on the silence is counted from there.
  type(u"b");
  EXPECT_EQ(keyTap.lastKeyEventAt(), 10);
  clock.now = 16;
  EXPECT_TRUE(keyTap.heartbeatRecreateIfStale(5.0));
}

}  // namespace
}  // namespace tessarok
