#include <array>
#include <gtest/gtest.h>

#include "desktops/macos/MacEvent.h"
#include "desktops/macos/MacEvents.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::macos {
namespace {

using fakemac::Event;
using fakemac::fakeSystem;
using fakemac::liveObjects;
using platform::EventType;

const Event& behind(const platform::Event& event) {
  return fakemac::as<Event>(static_cast<const MacEvent&>(event).get());
}

MacEvent wrap(Event& event) {
  return MacEvent(CfRef<CGEventRef>::retain(fakemac::refTo<CGEventRef>(&event)));
}

TEST(MacEvent, ReadsEveryField) {
  Event hardware;
  hardware.keyCode = 49;
  hardware.flags = kCGEventFlagMaskShift | kCGEventFlagMaskSecondaryFn;
  hardware.autorepeat = 1;
  hardware.userData = 0x123456789ABCDEF0;
  {
    const auto event = wrap(hardware);
    EXPECT_EQ(event.keyCode(), 49);
    EXPECT_EQ(event.flags(), 0x820000U);
    EXPECT_TRUE(event.isAutorepeat());
    EXPECT_EQ(event.sourceUserData(), 0x123456789ABCDEF0);
    EXPECT_EQ(hardware.references, 2);
  }
  EXPECT_EQ(hardware.references, 1);
}

TEST(MacEvent, TellsTheWholeLengthOfATextThatIsCutShort) {
  Event hardware;
  hardware.text = u"0123456789";
  const auto event = wrap(hardware);
  std::array<char16_t, 8> units{};
  EXPECT_EQ(event.unicodeString(units), 10U);
  EXPECT_EQ(std::u16string_view(units.data(), units.size()), u"01234567");
}

TEST(MacEvent, AnEventWithoutTextHasNoLength) {
  Event hardware;
  std::array<char16_t, 8> units{};
  EXPECT_EQ(wrap(hardware).unicodeString(units), 0U);
}

TEST(MacEvent, ACopyIsChangedWithoutItsOriginal) {
  Event hardware;
  hardware.keyCode = 36;
  hardware.flags = kCGEventFlagMaskAlphaShift;
  hardware.autorepeat = 1;
  hardware.text = u"\r";
  const auto event = wrap(hardware);
  const auto source = MacEvents().createPrivateSource();
  const auto copy = event.copy();
  ASSERT_NE(copy, nullptr);
  copy->setSource(*source);
  copy->setType(EventType::keyUp);
  copy->setAutorepeat(false);
  copy->setSourceUserData(7);

  EXPECT_EQ(behind(*copy).type, kCGEventKeyUp);
  EXPECT_EQ(behind(*copy).autorepeat, 0);
  EXPECT_EQ(behind(*copy).userData, 7);
  EXPECT_EQ(behind(*copy).sourceState, kCGEventSourceStatePrivate);
  EXPECT_EQ(behind(*copy).keyCode, 36);
  EXPECT_EQ(behind(*copy).flags, CGEventFlags{kCGEventFlagMaskAlphaShift});
  EXPECT_EQ(behind(*copy).text, u"\r");
  EXPECT_EQ(hardware.type, kCGEventKeyDown);
  EXPECT_EQ(hardware.autorepeat, 1);
  EXPECT_EQ(hardware.userData, 0);
  EXPECT_EQ(hardware.sourceState, std::nullopt);
}

TEST(MacEvent, AFailedCopyIsNull) {
  Event hardware;
  fakeSystem().failsNextCopy = true;
  EXPECT_EQ(wrap(hardware).copy(), nullptr);
}

TEST(MacEvents, MakesKeysOfAPrivateSource) {
  MacEvents events;
  {
    const auto source = events.createPrivateSource();
    ASSERT_NE(source, nullptr);
    const auto down = events.createKeyboardEvent(*source, 51, true);
    const auto up = events.createKeyboardEvent(*source, 51, false);
    ASSERT_NE(down, nullptr);
    ASSERT_NE(up, nullptr);
    EXPECT_EQ(behind(*down).type, kCGEventKeyDown);
    EXPECT_EQ(behind(*up).type, kCGEventKeyUp);
    EXPECT_EQ(behind(*down).keyCode, 51);
    EXPECT_EQ(behind(*down).sourceState, kCGEventSourceStatePrivate);
    down->setFlags(0);
    down->setUnicodeString(u"ж");
    EXPECT_EQ(behind(*down).flags, 0U);
    EXPECT_EQ(behind(*down).text, u"ж");
  }
  EXPECT_EQ(liveObjects(), 0U);
}

TEST(MacEvents, RefusalsAreNull) {
  MacEvents events;
  fakeSystem().failsNextSource = true;
  EXPECT_EQ(events.createPrivateSource(), nullptr);
  const auto source = events.createPrivateSource();
  ASSERT_NE(source, nullptr);
  fakeSystem().failsNextEvent = true;
  EXPECT_EQ(events.createKeyboardEvent(*source, 0, true), nullptr);
}

}  // namespace
}  // namespace tessarok::macos
