// The whole program on the fake Mac, where the stories do not look: at single events, and at what
// is asked of the system and given back.

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/macos/Mac.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"
#include "words/LayoutMap.h"

namespace tessarok::macostest {
namespace {

using fakemac::fakeSystem;

class MacProgramTest : public testing::Test {
 protected:
  void TearDown() override {
    mac.quit();
    EXPECT_EQ(Mac::leftovers(), "");
    EXPECT_EQ(fakeSystem().tap, nullptr);
    EXPECT_TRUE(fakeSystem().sources.empty());
    EXPECT_TRUE(fakeSystem().timers.empty());
  }

  virtualdesktop::TemporaryDirectory home;
  Mac mac{home.path(), TESSAROK_TEST_DATA};
};

TEST_F(MacProgramTest, CreatesOneTapForKeysAndClicks) {
  mac.launch();
  ASSERT_EQ(fakeSystem().tapRequests.size(), 1U);
  const auto& request = fakeSystem().tapRequests.front();
  EXPECT_EQ(request.location, kCGSessionEventTap);
  EXPECT_EQ(request.placement, kCGHeadInsertEventTap);
  EXPECT_EQ(request.options, kCGEventTapOptionDefault);
  EXPECT_EQ(request.mask, 0x2000C0AU);
  const auto& asked = fakeSystem().trustQuestions;
  EXPECT_EQ(std::count(asked.begin(), asked.end(), true), 1);
  ASSERT_EQ(fakeSystem().timers.size(), 1U);
  EXPECT_EQ(fakeSystem().timers.front()->interval, 2.0);
  EXPECT_EQ(fakeSystem().timers.front()->tolerance, 0.5);
  // Of the selected and the enabled layouts, and of the permission.
  EXPECT_EQ(fakeSystem().observers.size(), 3U);
}

TEST_F(MacProgramTest, SetsTheTapUpAndTakesItDownInOrder) {
  mac.launch();
  EXPECT_EQ(fakeSystem().tapCalls,
            (std::vector<std::string>{"create", "create source", "add source", "enable"}));
  fakeSystem().tapCalls.clear();
  mac.quit();
  EXPECT_EQ(fakeSystem().tapCalls,
            (std::vector<std::string>{"disable", "invalidate", "remove source"}));
}

TEST_F(MacProgramTest, ReadsAndWritesOnItsThreeSerialQueues) {
  ASSERT_EQ(setenv("TESSAROK_DEBUG", "", 1), 0);
  mac.launch();
  mac.quit();
  EXPECT_EQ(fakeSystem().queueLabels,
            (std::vector<std::string>{"app.tessarok.ignore-persistence", "app.tessarok.lists",
                                      "app.tessarok.dbg"}));
}

TEST_F(MacProgramTest, PostsBackspacesThenTextThenTheHeldKey) {
  mac.launch();
  mac.type("ghbdtn");
  mac.keyDown({.code = 36, .flags = kCGEventFlagMaskAlphaShift});
  EXPECT_EQ(mac.textField().text(), "привет\n");

  const std::u16string word = u"привет";
  ASSERT_EQ(mac.postedEvents.size(), 26U);
  for (std::size_t i = 0; i < mac.postedEvents.size(); ++i) {
    const auto& event = mac.postedEvents[i];
    SCOPED_TRACE(i);
    EXPECT_EQ(event.type, i % 2 == 0 ? kCGEventKeyDown : kCGEventKeyUp);
    EXPECT_EQ(event.userData, 0x5453524B);
    EXPECT_EQ(event.autorepeat, 0);
    EXPECT_EQ(event.sourceState, kCGEventSourceStatePrivate);
    const auto pair = i / 2;
    EXPECT_EQ(event.keyCode, pair < 6 ? 51 : pair < 12 ? 0 : 36);
    EXPECT_EQ(event.flags, pair < 12 ? 0U : CGEventFlags{kCGEventFlagMaskAlphaShift});
    EXPECT_EQ(event.text, pair < 6    ? std::u16string()
                          : pair < 12 ? word.substr(pair - 6, 1)
                                      : std::u16string(u"\r"));
  }
}

TEST_F(MacProgramTest, AFunctionKeyEndsAWordByTheControlCharacterThatItCarries) {
  mac.launch();
  for (const auto& [code, text] : {std::pair{96, u"\u0010"}, std::pair{122, u"\u0010"},
                                   std::pair{114, u"\u0005"}, std::pair{71, u"\u001b"}}) {
    SCOPED_TRACE(code);
    const auto before = mac.textField().text();
    mac.select("com.apple.keylayout.US");
    mac.type("ghbdtn");
    mac.keyDown({.code = code});
    mac.keyUp({.code = code});
    EXPECT_EQ(mac.textField().text(), before + "привет");
    // The key itself comes after the word, and is no text.
    ASSERT_GE(mac.postedEvents.size(), 2U);
    const auto& last = mac.postedEvents[mac.postedEvents.size() - 2];
    EXPECT_EQ(last.keyCode, code);
    EXPECT_EQ(last.text, text);
    // Not by the change of the layout, which would be the end of this word as well.
    mac.keyDown({.code = 36});
  }
}

// In the middle of a word it is a boundary, as a comma would be.
TEST_F(MacProgramTest, AFunctionKeyInAWordDividesIt) {
  mac.launch();
  mac.type("ghbd");
  mac.keyDown({.code = 122});
  mac.keyUp({.code = 122});
  mac.type("tn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
}

TEST_F(MacProgramTest, SwallowsTheKeyThatItPostsAgain) {
  mac.launch();
  mac.type("ghbdtn");
  static_cast<void>(mac.takeDelivered());
  mac.keyDown({.code = 49});
  auto delivered = mac.takeDelivered();
  ASSERT_FALSE(delivered.empty());
  EXPECT_EQ(delivered.front(), "down 51");
  EXPECT_EQ(std::count(delivered.begin(), delivered.end(), "down 49"), 0);
  mac.keyUp({.code = 49});
  EXPECT_TRUE(mac.takeDelivered().empty());
}

TEST_F(MacProgramTest, WaitsForThePermission) {
  mac.setTrusted(false);
  mac.launch();
  EXPECT_FALSE(mac.delegate().tapRunning());
  mac.wait(2);
  EXPECT_FALSE(mac.delegate().tapRunning());
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
  mac.setTrusted(true);
  mac.wait(2);
  EXPECT_TRUE(mac.delegate().tapRunning());
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn привет ");
}

/// Nowhere does the program say that it works.
void expectAWarning(Mac& mac) {
  EXPECT_FALSE(mac.delegate().tapRunning());
  EXPECT_EQ(mac.services().statusBar->icon().symbol, "keyboard.badge.ellipsis");
  EXPECT_EQ(mac.services().statusBar->icon().toolTip, "Tessarok — needs Accessibility permission");
}

TEST_F(MacProgramTest, WithoutPermissionATapThatSeesNoKeysIsNone) {
  fakeSystem().untrustedTap = fakemac::FakeSystem::UntrustedTap::withoutKeys;
  mac.setTrusted(false);
  mac.launch();
  for (int tick = 0; tick < 5; ++tick) {
    expectAWarning(mac);
    mac.wait(2);
  }
  mac.setTrusted(true);
  mac.wait(2);
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "привет ");
}

TEST_F(MacProgramTest, LosesThePermissionWithoutHoldingAKeyUp) {
  mac.launch();
  mac.type("ghb");
  fakeSystem().takePermission();
  fakeSystem().announce("com.apple.accessibility.api");
  mac.type("dtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
  EXPECT_TRUE(fakeSystem().waitingKeys.empty());
  mac.wait(2.5);
  expectAWarning(mac);
  mac.setTrusted(true);
  mac.wait(2);
  EXPECT_TRUE(mac.delegate().tapRunning());
  // What was typed before the first boundary is not known.
  mac.type("ghbdtn ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ghbdtn привет ");
}

TEST_F(MacProgramTest, LosesThePermissionUnannouncedUntilTheNextTick) {
  mac.launch();
  fakeSystem().takePermission();
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "");
  mac.wait(2.5);
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
  expectAWarning(mac);
}

TEST_F(MacProgramTest, LosesThePermissionWhileAPasswordIsTyped) {
  mac.launch();
  fakeSystem().secureInput = true;
  fakeSystem().takePermission();
  mac.wait(2.5);
  expectAWarning(mac);
  fakeSystem().secureInput = false;
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
}

TEST_F(MacProgramTest, ATapThatIsDisabledForTheLostPermissionIsNotEnabledAgain) {
  mac.launch();
  fakeSystem().takePermission();
  mac.disableTap(kCGEventTapDisabledByUserInput);
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
  mac.wait(2.5);
  expectAWarning(mac);
}

TEST_F(MacProgramTest, WorksOnThoughItsTapIsDisabledAgainAndAgain) {
  mac.launch();
  for (int i = 0; i < 100; ++i) {
    mac.type("ghb");
    mac.disableTap(i % 2 == 0 ? kCGEventTapDisabledByTimeout : kCGEventTapDisabledByUserInput);
    mac.type("dtn ");
    // The watchdog finds it disabled without a word.
    mac.type("ghb");
    fakeSystem().tap->isEnabled = false;
    mac.wait(2.5);
    mac.type("dtn ");
  }
  std::string expected;
  for (int i = 0; i < 200; ++i)
    expected += "ghbdtn ";
  EXPECT_EQ(mac.textField().text(), expected);
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), expected + "привет ");
  EXPECT_EQ(fakemac::liveObjects(fakemac::Kind::machPort), 1U);
}

TEST_F(MacProgramTest, AnotherProgramsPasswordKeepsItWaiting) {
  mac.launch();
  mac.type("ghb");
  fakeSystem().secureInput = true;
  mac.type("secret");
  mac.wait(60);
  EXPECT_EQ(fakeSystem().tapRequests.size(), 1U);
  fakeSystem().secureInput = false;
  mac.type(" ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbsecret привет ");
}

TEST_F(MacProgramTest, MakesNoTapWhileAPasswordIsTyped) {
  fakeSystem().secureInput = true;
  mac.launch();
  EXPECT_TRUE(fakeSystem().tapRequests.empty());
  fakeSystem().secureInput = false;
  mac.wait(2);
  EXPECT_EQ(fakeSystem().tapRequests.size(), 1U);
}

TEST_F(MacProgramTest, ADeafTapIsGivenBackAndMadeAgain) {
  mac.launch();
  fakeSystem().tap->isDeaf = true;
  mac.wait(5);
  mac.type("a");
  mac.wait(1);
  EXPECT_EQ(fakeSystem().tapRequests.size(), 2U);
  EXPECT_EQ(fakemac::liveObjects(fakemac::Kind::machPort), 1U);
  EXPECT_EQ(fakemac::liveObjects(fakemac::Kind::runLoopSource), 1U);
}

TEST_F(MacProgramTest, ATimedOutTapIsEnabledAgain) {
  mac.launch();
  mac.disableTap(kCGEventTapDisabledByTimeout);
  EXPECT_TRUE(fakeSystem().tap->isEnabled);
  EXPECT_EQ(fakeSystem().tapRequests.size(), 1U);
  EXPECT_TRUE(KeyTap::shared().word().untrackableWord());
}

TEST_F(MacProgramTest, RunsWithoutARunLoopSource) {
  fakeSystem().failsNextRunLoopSource = true;
  mac.launch();
  EXPECT_TRUE(mac.delegate().tapRunning());
  mac.type("ghbdtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
}

TEST_F(MacProgramTest, AnEventThatCannotBeCopiedChangesNothing) {
  mac.launch();
  mac.type("ghbdtn");
  fakeSystem().failsNextCopy = true;
  mac.type("\n");
  EXPECT_EQ(mac.textField().text(), "ghbdtn\n");
  EXPECT_TRUE(mac.postedEvents.empty());
}

TEST_F(MacProgramTest, ScansTheExtraKeyOnlyOnIsoKeyboards) {
  mac.launch();
  EXPECT_FALSE(LayoutMap::enToRu().contains(U'§'));
  EXPECT_EQ(fakeSystem().translatedFor.size(), 2U * 2 * 50);
  fakeSystem().translatedFor.clear();
  fakeSystem().keyboardType = 41;
  fakeSystem().physicalLayout = kKeyboardISO;
  mac.wait(2);
  EXPECT_TRUE(LayoutMap::enToRu().contains(U'§'));
  EXPECT_EQ(fakeSystem().translatedFor, std::vector<std::uint32_t>(2U * 2 * 51, 41));
}

TEST_F(MacProgramTest, KeysThatCannotBeTranslatedAreLeftOut) {
  constexpr std::uint16_t kMinus = 27;
  constexpr std::uint16_t kEquals = 24;
  fakeSystem().keyErrors[kMinus] = -50;
  fakeSystem().keyTexts[{kEquals, false}] = u"ab";
  mac.launch();
  EXPECT_TRUE(InputSource::canProcessCurrentLayout());
  EXPECT_FALSE(LayoutMap::enToRu().contains(U'-'));
  EXPECT_FALSE(LayoutMap::enToRu().contains(U'='));
  EXPECT_TRUE(LayoutMap::enToRu().contains(U'+'));
}

TEST_F(MacProgramTest, ALayoutWithoutUsableDataCannotBeProcessed) {
  fakeSystem().installed[1]->set(kTISPropertyUnicodeKeyLayoutData,
                                 new fakemac::Data(std::vector<UInt8>(39)));
  mac.launch();
  EXPECT_FALSE(InputSource::canProcessCurrentLayout());
  EXPECT_EQ(mac.services().statusBar->icon().symbol, "keyboard.badge.ellipsis");
}

TEST_F(MacProgramTest, KeepsTheSwitchesOfTheMenu) {
  mac.launch();
  ASSERT_TRUE(mac.choose("Shift-фикс (ПРивет → Привет)"));
  EXPECT_EQ(fakeSystem().preferences.at("shiftLagFix"), kCFBooleanFalse);
}

TEST_F(MacProgramTest, ForgetsTheWordWithTheApplication) {
  mac.launch();
  mac.type("ghb");
  mac.announceToWorkspace(platform::Notification::applicationActivated);
  mac.type("dtn ");
  EXPECT_EQ(mac.textField().text(), "ghbdtn ");
}

TEST(MacDesktop, PutsThePersonsFilesWhereTheSystemSays) {
  macostest::FakeObjectiveCServices services;
  auto made = services.make("/Users/person");
  made.applicationSupport = "/Users/person/Library/Application Support";
  macos::MacDesktop desktop(std::move(made));
  EXPECT_EQ(desktop.files().homeDirectory(), "/Users/person");
  EXPECT_EQ(desktop.files().applicationSupportDirectory(),
            "/Users/person/Library/Application Support");
}

}  // namespace
}  // namespace tessarok::macostest
