// One event, as far as a person at a keyboard cannot make it.

#include <gtest/gtest.h>

#include "desktops/virtual/VirtualEvent.h"
#include "platform/EventFlags.h"
#include "tests/support/FakeDesktop.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"

namespace tessarok {
namespace {

using platform::EventType;
using testing::FakeDesktop;
using virtualdesktop::VirtualEvent;
namespace flags = platform::eventFlags;

class NoProxy final : public platform::EventTapProxy {
 public:
  void post(const platform::Event&) override { ++posted; }
  int posted = 0;
};

class KeyTapHandleTest : public ::testing::Test {
 protected:
  platform::Event* handle(VirtualEvent& event) { return keyTap.handle(&proxy, event.type, &event); }
  bool passes(KeyCode code, std::u16string_view text, std::uint64_t modifiers = 0) {
    VirtualEvent event;
    event.code = code;
    event.payload = text;
    event.modifiers = modifiers;
    return handle(event) == &event;
  }
  void type(std::u16string_view text) {
    for (const auto unit : text)
      EXPECT_TRUE(passes(0, std::u16string(1, unit)));
  }

  FakeDesktop desktop;
  KeyTap& keyTap = KeyTap::shared();
  NoProxy proxy;
};

TEST_F(KeyTapHandleTest, PseudoEventsCarryNoEvent) {
  EXPECT_EQ(keyTap.handle(&proxy, EventType::tapDisabledByTimeout, nullptr), nullptr);
  EXPECT_TRUE(keyTap.word().untrackableWord());
  EXPECT_EQ(keyTap.handle(&proxy, EventType::keyDown, nullptr), nullptr);
}

TEST_F(KeyTapHandleTest, EventsOfAnUnknownTypePassUntouched) {
  type(u"ab");
  VirtualEvent event;
  event.type = static_cast<EventType>(12);
  EXPECT_EQ(handle(event), &event);
  EXPECT_EQ(keyTap.word().buffer(), "ab");
  desktop.secureInput().on = true;
  EXPECT_EQ(handle(event), &event);
  EXPECT_TRUE(keyTap.word().buffer().empty());
}

TEST_F(KeyTapHandleTest, OwnEventsPassUntouchedUnderAllCircumstances) {
  type(u"ab");
  for (const auto code : {KeyTap::kDelete, KeyTap::kSpace, keyCodes::grave, keyCodes::escape}) {
    VirtualEvent event;
    event.code = code;
    event.userData = 0x5453524B;
    event.payload = u"x";
    EXPECT_EQ(handle(event), &event);
  }
  EXPECT_EQ(keyTap.word().buffer(), "ab");
  EXPECT_EQ(keyTap.pausedUntil(), 0);
}

TEST_F(KeyTapHandleTest, OtherMarkersAreHardware) {
  VirtualEvent event;
  event.payload = u"x";
  event.userData = 0x5453524C;
  EXPECT_EQ(handle(event), &event);
  EXPECT_EQ(keyTap.word().buffer(), "x");
}

TEST_F(KeyTapHandleTest, AWordOfSixtyFourCharactersIsTrackedAndOneMoreIsNot) {
  type(std::u16string(64, u'a'));
  EXPECT_EQ(keyTap.word().buffer().size(), 64u);
  type(u"a");
  EXPECT_TRUE(keyTap.word().buffer().empty());
  EXPECT_TRUE(keyTap.word().untrackableWord());
  EXPECT_TRUE(passes(KeyTap::kDelete, u"\x7f"));
  EXPECT_TRUE(keyTap.word().untrackableWord());
}

TEST_F(KeyTapHandleTest, TheLimitCountsCharactersNotBytes) {
  type(std::u16string(64, u'я'));
  EXPECT_EQ(keyTap.word().buffer().size(), 128u);
  EXPECT_FALSE(keyTap.word().untrackableWord());
}

TEST_F(KeyTapHandleTest, TextsThatNoKeyGivesEndTheWord) {
  const std::u16string pair = u"ab";
  type(u"x");
  EXPECT_TRUE(passes(0, pair));
  EXPECT_TRUE(keyTap.word().untrackableWord());
  keyTap.resetWord();
  // A text of several Characters that ends with punctuation leaves nothing under the caret.
  EXPECT_TRUE(passes(0, u"a!"));
  EXPECT_FALSE(keyTap.word().untrackableWord());
  // One Character of two units.
  EXPECT_TRUE(passes(0, u"e\u0301"));
  EXPECT_TRUE(keyTap.word().untrackableWord());
  keyTap.resetWord();
  EXPECT_TRUE(passes(0, u"123456789"));
  EXPECT_TRUE(keyTap.word().untrackableWord());
  keyTap.resetWord();
  EXPECT_TRUE(passes(0, u"!!!!!!!!!"));
  EXPECT_TRUE(keyTap.word().untrackableWord());
}

TEST_F(KeyTapHandleTest, LettersOfNeitherLayoutMakeTheWordUnknown) {
  for (const auto* letter : {u"é", u"ї", u"字"}) {
    keyTap.resetWord();
    type(u"a");
    EXPECT_TRUE(passes(0, letter));
    EXPECT_TRUE(keyTap.word().untrackableWord());
    EXPECT_TRUE(keyTap.word().buffer().empty());
  }
}

TEST_F(KeyTapHandleTest, DigitsAndUnderscoresExtendAWord) {
  type(u"a1_٣");
  EXPECT_EQ(keyTap.word().buffer(), "a1_٣");
}

TEST_F(KeyTapHandleTest, AnEmptyPayloadInsideAWordMakesItUnknown) {
  type(u"ab");
  EXPECT_TRUE(passes(0, u""));
  EXPECT_TRUE(keyTap.word().untrackableWord());
  EXPECT_TRUE(keyTap.word().buffer().empty());
}

TEST_F(KeyTapHandleTest, AnEmptyPayloadBetweenWordsLosesNothing) {
  type(u"ab");
  EXPECT_TRUE(passes(KeyTap::kSpace, u" "));
  EXPECT_TRUE(passes(0, u""));
  EXPECT_FALSE(keyTap.word().untrackableWord());
  EXPECT_FALSE(keyTap.word().lastFix());
}

TEST_F(KeyTapHandleTest, TheProxyIsGoneAfterTheEvent) {
  type(u"a");
  EXPECT_FALSE(keyTap.replace(1, "b", std::nullopt, nullptr));
  EXPECT_EQ(proxy.posted, 0);
}

TEST_F(KeyTapHandleTest, ALetterWithShiftKeepsTracking) {
  EXPECT_TRUE(passes(0, u"A", flags::shift | flags::capsLock | flags::function));
  EXPECT_EQ(keyTap.word().buffer(), "A");
}

TEST_F(KeyTapHandleTest, AKeyThatRepeatsStartsNoPause) {
  VirtualEvent event;
  event.code = keyCodes::grave;
  event.payload = u"`";
  event.autorepeat = true;
  EXPECT_EQ(handle(event), &event);
  EXPECT_EQ(keyTap.pausedUntil(), 0);
  EXPECT_EQ(keyTap.word().buffer(), "`");
}

TEST_F(KeyTapHandleTest, ThePauseIsAnnouncedThreeTimesForTwoPresses) {
  int announced = 0;
  keyTap.onPauseChange = [&] { ++announced; };
  EXPECT_TRUE(passes(keyCodes::grave, u"`"));
  desktop.runLoop().advance(3);
  EXPECT_TRUE(passes(keyCodes::isoSection, u"§"));
  EXPECT_EQ(announced, 2);
  desktop.runLoop().advance(2.2);
  EXPECT_EQ(announced, 2);
  desktop.runLoop().advance(3);
  EXPECT_EQ(announced, 3);
  desktop.runLoop().advance(20);
  EXPECT_EQ(announced, 3);
  keyTap.onPauseChange = nullptr;
}

TEST_F(KeyTapHandleTest, WhoIsToldOfAPauseFindsItBegun) {
  type(u"ab");
  int announced = 0;
  keyTap.onPauseChange = [&] {
    ++announced;
    EXPECT_EQ(keyTap.pausedUntil(), desktop.clock().uptime() + 5.0);
    EXPECT_TRUE(keyTap.word().buffer().empty());
    EXPECT_TRUE(keyTap.word().untrackableWord());
  };
  EXPECT_TRUE(passes(keyCodes::grave, u"`"));
  EXPECT_EQ(announced, 1);
  keyTap.onPauseChange = nullptr;
}

TEST_F(KeyTapHandleTest, ThePauseCheckOfADestroyedKeyTapDoesNothing) {
  int announced = 0;
  {
    const auto own = std::make_shared<KeyTap>();
    own->onPauseChange = [&] { ++announced; };
    VirtualEvent event;
    event.code = keyCodes::grave;
    EXPECT_EQ(own->handle(&proxy, EventType::keyDown, &event), &event);
  }
  EXPECT_EQ(announced, 1);
  desktop.runLoop().advance(10);
  EXPECT_EQ(announced, 1);
}

// The end of a word, as no key gives it.

TEST_F(KeyTapHandleTest, AWordThatEndsWithoutABoundaryIsNotRemembered) {
  type(u"ab");
  EXPECT_FALSE(keyTap.evaluateAndFix({}));
  EXPECT_EQ(keyTap.word().buffer(), "ab");
  EXPECT_FALSE(keyTap.word().lastFix());
}

TEST_F(KeyTapHandleTest, ALineEndBehindOneLetterEndsTheStreak) {
  desktop.addAllTestData();
  for (const auto* lineEnd : {"\n", "\t"}) {
    type(u"ghbdtn");
    EXPECT_FALSE(passes(KeyTap::kSpace, u" "));
    ASSERT_EQ(keyTap.word().ruStreak(), 1);
    type(u"z");
    EXPECT_FALSE(keyTap.evaluateAndFix({" "}));
    EXPECT_EQ(keyTap.word().ruStreak(), 1);
    EXPECT_FALSE(keyTap.evaluateAndFix({lineEnd}));
    EXPECT_EQ(keyTap.word().ruStreak(), 0);
    EXPECT_EQ(keyTap.word().enStreak(), 0);
    keyTap.resetWord();
  }
}

}  // namespace
}  // namespace tessarok
