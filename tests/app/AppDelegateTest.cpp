#include <cerrno>
#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/HandClock.h"
#include "tests/support/TestFiles.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using platform::FileLockFailure;
using testing::FakeDesktop;
using testing::HandClock;
using Log = std::vector<std::string>;

/// A bar without symbols, without a place to draw, or without an item at all.
class PlainBar final : public platform::StatusBar {
 public:
  std::unique_ptr<platform::StatusItem> createItem() override {
    return hasItem ? std::make_unique<Item>(*this) : nullptr;
  }

  bool hasItem = true;
  bool hasButton = true;
  std::string title;
  std::string toolTip;
  bool isDimmed = false;
  std::shared_ptr<platform::Menu> menu;

 private:
  class Item final : public platform::StatusItem {
   public:
    explicit Item(PlainBar& bar) : bar_(bar) {}
    bool hasButton() const override { return bar_.hasButton; }
    bool setSymbol(std::string_view) override { return false; }
    void setTitle(std::string_view text) override { bar_.title = text; }
    void setAppearsDisabled(bool disabled) override { bar_.isDimmed = disabled; }
    void setToolTip(std::string_view text) override { bar_.toolTip = text; }
    void setMenu(std::shared_ptr<platform::Menu> made) override { bar_.menu = std::move(made); }

   private:
    PlainBar& bar_;
  };
};

class AppDelegateTest : public ::testing::Test {
 protected:
  void launch(AppDelegate::Instances instances) {
    delegate = std::make_shared<AppDelegate>(instances);
    delegate->applicationDidFinishLaunching();
    desktop.base().endTurn();
  }
  /// Another copy of the kind of which there may be many, which writes what is learned.
  platform::FileLockResult holdLearning() {
    EXPECT_FALSE(desktop.files().createDirectories(desktop.folder()));
    return desktop.files().lockExclusively(desktop.folder() / ".learning.lock");
  }
  [[nodiscard]] int filesHandedOver() const {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(desktop.folder()))
      count += entry.path().filename().string().starts_with(".learned-") ? 1 : 0;
    return count;
  }
  /// Whether the program survives its launch beside another instance.
  bool survives(const platform::RunningApplication& self,
                const platform::RunningApplication& other) {
    desktop.application().own = self;
    desktop.application().all = {self, other};
    delegate->applicationDidFinishLaunching();
    return !desktop.application().terminationRequested;
  }

  FakeDesktop desktop;
  std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>();
};

TEST_F(AppDelegateTest, TheOnlyInstanceRuns) {
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().isAccessory);
  EXPECT_FALSE(desktop.application().terminationRequested);
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(desktop.application().askedFor, "app.tessarok");
  EXPECT_TRUE(fs::exists(desktop.folder() / "instance.lock"));
  delegate->applicationWillTerminate();
}

TEST_F(AppDelegateTest, InstancesAreLookedForByTheBundlesIdentifier) {
  desktop.bundle().ownIdentifier = "org.example.build";
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(desktop.application().askedFor, "org.example.build");
}

TEST_F(AppDelegateTest, AnOlderInstanceSurvivesEvenWithALargerIdentifier) {
  EXPECT_FALSE(survives({100, 50.0}, {200, 49.5}));
  // Nothing was touched.
  EXPECT_FALSE(fs::exists(desktop.folder()));
  EXPECT_FALSE(delegate->tapRunning());
  EXPECT_FALSE(KeyTap::shared().tapExists());
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST_F(AppDelegateTest, AYoungerInstanceIsNoHindranceEvenWithASmallerIdentifier) {
  EXPECT_TRUE(survives({100, 50.0}, {7, 50.5}));
}

TEST_F(AppDelegateTest, AmongEquallyOldTheSmallerIdentifierSurvives) {
  EXPECT_FALSE(survives({100, 50.0}, {99, 50.0}));
}

TEST_F(AppDelegateTest, AmongEquallyOldTheLargerIdentifierIsNoHindrance) {
  EXPECT_TRUE(survives({100, 50.0}, {101, 50.0}));
}

TEST_F(AppDelegateTest, WithoutTheOthersDateIdentifiersDecide) {
  EXPECT_FALSE(survives({100, 50.0}, {99, std::nullopt}));
}

TEST_F(AppDelegateTest, WithoutTheOwnDateIdentifiersDecide) {
  EXPECT_TRUE(survives({100, std::nullopt}, {101, 1.0}));
}

TEST_F(AppDelegateTest, WithoutAnyDateIdentifiersDecide) {
  EXPECT_FALSE(survives({100, std::nullopt}, {99, std::nullopt}));
}

TEST_F(AppDelegateTest, EveryOtherInstanceIsLookedAt) {
  desktop.application().all = {{101, 60.0}, {100, 50.0}, {300, 40.0}};
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().terminationRequested);
}

TEST_F(AppDelegateTest, AStaleLockFileDoesNotBlockAStart) {
  testing::writeFile(desktop.folder() / "instance.lock", "4711\n");
  delegate->applicationDidFinishLaunching();
  EXPECT_FALSE(desktop.application().terminationRequested);
  EXPECT_TRUE(delegate->tapRunning());
}

TEST_F(AppDelegateTest, AHeldLockEndsTheLaunchBeforeAnyDataIsTouched) {
  ASSERT_FALSE(desktop.files().createDirectories(desktop.folder()));
  const auto held = desktop.files().lockExclusively(desktop.folder() / "instance.lock");
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().terminationRequested);
  EXPECT_EQ(desktop.systemLog().take(), Log{"Tessarok: another instance is already running"});
  EXPECT_FALSE(fs::exists(UserDict::fileURL()));
  EXPECT_FALSE(KeyTap::shared().tapExists());
  EXPECT_EQ(desktop.base().statusBar().menu(), nullptr);
}

TEST_F(AppDelegateTest, ALockFileThatCannotBeOpenedSaysWhy) {
  fs::create_directories(desktop.folder() / "instance.lock");
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().terminationRequested);
  EXPECT_EQ(desktop.systemLog().take(),
            Log{"Tessarok: could not open instance lock (errno " + std::to_string(EISDIR) + ")"});
}

TEST_F(AppDelegateTest, ALockThatCannotBeHadSaysWhy) {
  desktop.files().lockFailure = FileLockFailure{FileLockFailure::Reason::cannotLock, ENOLCK};
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().terminationRequested);
  EXPECT_EQ(desktop.systemLog().take(), Log{"Tessarok: could not acquire instance lock (errno " +
                                            std::to_string(ENOLCK) + ")"});
}

TEST_F(AppDelegateTest, AFolderThatCannotBeMadeSaysWhy) {
  testing::writeFile(desktop.folder().parent_path(), "in the way");
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().terminationRequested);
  const auto log = desktop.systemLog().take();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_TRUE(log.front().starts_with("Tessarok: could not create instance lock directory: "))
      << log.front();
  EXPECT_GT(log.front().size(),
            std::string("Tessarok: could not create instance lock directory: ").size());
}

TEST_F(AppDelegateTest, TheLockIsHeldForTheWholeRunAndGivenUpAtTheEnd) {
  delegate->applicationDidFinishLaunching();
  const auto file = desktop.folder() / "instance.lock";
  EXPECT_TRUE(std::holds_alternative<FileLockFailure>(desktop.files().lockExclusively(file)));
  delegate->applicationWillTerminate();
  EXPECT_FALSE(std::holds_alternative<FileLockFailure>(desktop.files().lockExclusively(file)));
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(AppDelegateTest, WhatWasLearnedIsOnTheDiskAfterTheEnd) {
  delegate->applicationDidFinishLaunching();
  for (int i = 0; i < 50; ++i)
    IgnoreList::recordRejection("word" + std::string(1, static_cast<char>('a' + i % 26)));
  delegate->applicationWillTerminate();
  const auto text = testing::readFile(desktop.folder() / "rejects.txt");
  EXPECT_TRUE(text.starts_with("worda\t2\nwordb\t2\n")) << text;
  EXPECT_TRUE(text.ends_with("wordz\t1\n")) << text;
}

TEST_F(AppDelegateTest, NothingRunsOnAfterTheEnd) {
  delegate->applicationDidFinishLaunching();
  delegate->applicationWillTerminate();
  EXPECT_FALSE(KeyTap::shared().tapExists());
  const auto listings = desktop.inputSources().listings;
  desktop.runLoop().advance(60);
  desktop.inputSourceNotifications().announce(platform::Notification::selectedInputSourceChanged);
  EXPECT_EQ(desktop.inputSources().listings, listings);
  EXPECT_FALSE(KeyTap::shared().tapExists());
  EXPECT_FALSE(KeyTap::shared().onPauseChange);
}

TEST_F(AppDelegateTest, EndingWithoutHavingLaunchedDoesNoHarm) {
  delegate->applicationWillTerminate();
  EXPECT_FALSE(KeyTap::shared().tapExists());
}

TEST_F(AppDelegateTest, TheTapIsTriedEveryTwoSecondsUntilThePermissionIsGiven) {
  desktop.base().setTrusted(false);
  delegate->applicationDidFinishLaunching();
  EXPECT_FALSE(delegate->tapRunning());
  desktop.runLoop().advance(10);
  EXPECT_FALSE(delegate->tapRunning());
  desktop.base().setTrusted(true);
  desktop.runLoop().advance(1.9);
  EXPECT_FALSE(delegate->tapRunning());
  desktop.runLoop().advance(0.1);
  EXPECT_TRUE(delegate->tapRunning());
}

TEST_F(AppDelegateTest, AnAddedLayoutIsNoticedWithoutARestart) {
  auto& sources = desktop.inputSources();
  const auto russian = sources.layouts.back();
  sources.layouts.pop_back();
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard.badge.ellipsis");
  sources.layouts.push_back(russian);
  desktop.inputSourceNotifications().announce(platform::Notification::enabledInputSourcesChanged);
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard");
  sources.layouts.pop_back();
  desktop.inputSourceNotifications().announce(platform::Notification::enabledInputSourcesChanged);
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard.badge.ellipsis");
}

TEST_F(AppDelegateTest, OfManyCopiesOneWritesAndAnotherHandsOver) {
  const auto held = holdLearning();
  launch(AppDelegate::Instances::many);
  EXPECT_FALSE(desktop.application().terminationRequested);
  EXPECT_TRUE(delegate->tapRunning());
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_EQ(desktop.systemLog().take(), Log{});
  EXPECT_FALSE(fs::exists(desktop.folder() / "rejects.txt"));
  EXPECT_EQ(filesHandedOver(), 1);
}

TEST_F(AppDelegateTest, TheNextCopyWritesWithinATickOfTheEndOfTheOneBefore) {
  auto held = holdLearning();
  launch(AppDelegate::Instances::many);
  IgnoreList::recordRejection("слово");
  desktop.runLoop().advance(2);
  EXPECT_FALSE(fs::exists(desktop.folder() / "rejects.txt"));
  held = platform::FileLockFailure{};
  desktop.runLoop().advance(2);
  EXPECT_EQ(testing::readFile(desktop.folder() / "rejects.txt"), "слово\t1\n");
  EXPECT_EQ(filesHandedOver(), 0);
  IgnoreList::recordRejection("слово");
  desktop.base().endTurn();
  EXPECT_EQ(testing::readFile(desktop.folder() / "rejects.txt"), "слово\t2\n");
  EXPECT_EQ(desktop.systemLog().take(), Log{});
}

TEST_F(AppDelegateTest, TheFirstOfManyCopiesWrites) {
  launch(AppDelegate::Instances::many);
  EXPECT_EQ(desktop.systemLog().take(), Log{});
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_TRUE(fs::exists(desktop.folder() / "rejects.txt"));
}

TEST_F(AppDelegateTest, TheOnlyCopyRunsBesideOneOfManyThatWrites) {
  const auto held = holdLearning();
  launch(AppDelegate::Instances::onlyOne);
  EXPECT_TRUE(delegate->tapRunning());
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_EQ(desktop.systemLog().take(), Log{});
  EXPECT_FALSE(fs::exists(desktop.folder() / "rejects.txt"));
  EXPECT_EQ(filesHandedOver(), 1);
}

TEST_F(AppDelegateTest, ACopyOfManyLeavesTheFilesToTheOnlyOne) {
  testing::ChildProcess other({"--resources", TESSAROK_TEST_DATA, "replay", "--home",
                               desktop.files().homeDirectory().string()});
  ASSERT_TRUE(other.send("{\"print\": [\"tap\"]}\n"));
  ASSERT_TRUE(other.receive().has_value());
  launch(AppDelegate::Instances::many);
  EXPECT_TRUE(delegate->tapRunning());
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_EQ(desktop.systemLog().take(), Log{});
  EXPECT_EQ(filesHandedOver(), 1);
  // The other one counts it within a tick.
  ASSERT_TRUE(other.send("{\"wait\": 2}\n{\"print\": [\"lists\"]}\n"));
  const auto lists = other.receive();
  ASSERT_TRUE(lists.has_value());
  EXPECT_NE(lists->find("\"rejects\":{\"слово\":1}"), std::string::npos) << *lists;
  EXPECT_EQ(testing::readFile(desktop.folder() / "rejects.txt"), "слово\t1\n");
  EXPECT_EQ(filesHandedOver(), 0);
  EXPECT_EQ(other.finish(), 0);
}

TEST_F(AppDelegateTest, WithoutALockWhatIsLearnedStaysInMemoryAndIsSaid) {
  desktop.files().lockFailure = {.reason = FileLockFailure::Reason::cannotLock, .number = ENOLCK};
  launch(AppDelegate::Instances::many);
  IgnoreList::recordRejection("слово");
  desktop.runLoop().advance(2);
  EXPECT_EQ(desktop.systemLog().take(),
            Log{"Tessarok: could not acquire instance lock (errno " + std::to_string(ENOLCK) +
                "); what is learned here stays in memory"});
  EXPECT_EQ(filesHandedOver(), 0);
  // Once it is to be had, nothing was lost.
  desktop.files().lockFailure.reset();
  desktop.runLoop().advance(2);
  EXPECT_EQ(testing::readFile(desktop.folder() / "rejects.txt"), "слово\t1\n");
  EXPECT_EQ(desktop.systemLog().take(), Log{});
}

TEST_F(AppDelegateTest, AChangeOfLayoutThatNobodyAnnouncedIsNoticedByTheTimer) {
  delegate->applicationDidFinishLaunching();
  desktop.base().keyDown({.code = 0, .characters = u"a"});
  ASSERT_EQ(KeyTap::shared().word().buffer(), "a");
  desktop.inputSources().active = "com.apple.keylayout.RussianWin";
  desktop.runLoop().advance(2);
  EXPECT_TRUE(KeyTap::shared().word().buffer().empty());
  EXPECT_TRUE(KeyTap::shared().word().untrackableWord());
  desktop.inputSources().active = "com.apple.keylayout.Ukrainian";
  desktop.runLoop().advance(2);
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard.badge.ellipsis");
}

TEST_F(AppDelegateTest, APauseAfterTheDelegateIsGoneChangesNoIcon) {
  delegate->applicationDidFinishLaunching();
  delegate.reset();
  desktop.base().keyDown({.code = keyCodes::grave, .characters = u"`"});
  EXPECT_GT(KeyTap::shared().pausedUntil(), desktop.clock().uptime());
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard");
}

TEST_F(AppDelegateTest, TheMissingRussianDictionaryShowsInTheToolTip) {
  desktop.addResource("dict_en", "hello\n");
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard");
  EXPECT_TRUE(
      desktop.base().statusBar().icon().toolTip.starts_with("Tessarok — missing dictionaries"));
}

TEST_F(AppDelegateTest, WithoutSymbolsTheIconIsAText) {
  PlainBar bar;
  desktop.replaced.statusBar = &bar;
  desktop.base().setTrusted(false);
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(bar.title, "⌨︎⚠︎");
  EXPECT_TRUE(bar.isDimmed);
  desktop.base().setTrusted(true);
  desktop.runLoop().advance(2);
  EXPECT_EQ(bar.title, "⌨︎");
  EXPECT_FALSE(bar.isDimmed);
  desktop.base().keyDown({.code = keyCodes::grave, .characters = u"`"});
  EXPECT_EQ(bar.title, "⌨︎⏸");
  EXPECT_TRUE(bar.isDimmed);
  desktop.runLoop().advance(6);
  EXPECT_EQ(bar.title, "⌨︎");
  auto& enabled = *bar.menu->items.front();
  enabled.action(enabled);
  EXPECT_EQ(bar.title, "⌨︎⏸");
  delegate->applicationWillTerminate();
}

TEST_F(AppDelegateTest, WithoutAPlaceToDrawNothingIsDrawn) {
  PlainBar bar;
  bar.hasButton = false;
  desktop.replaced.statusBar = &bar;
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(bar.title, "");
  EXPECT_EQ(bar.toolTip, "");
  EXPECT_NE(bar.menu, nullptr);
  delegate->applicationWillTerminate();
}

TEST_F(AppDelegateTest, WithoutAnIconTheProgramWorksAllTheSame) {
  PlainBar bar;
  bar.hasItem = false;
  desktop.replaced.statusBar = &bar;
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(bar.menu, nullptr);
  delegate->applicationWillTerminate();
}

TEST_F(AppDelegateTest, AMenuItemOfNoPackDoesNothing) {
  delegate->applicationDidFinishLaunching();
  const auto& packs = *desktop.base().statusBar().menu()->items[4]->submenu;
  auto& item = *packs.items.front();
  for (const int tag : {-1, 3, 100}) {
    item.tag = tag;
    item.action(item);
  }
  EXPECT_TRUE(desktop.userDefaults().values.empty());
  item.tag = 2;
  item.action(item);
  EXPECT_EQ(desktop.userDefaults().boolean("pack.gaming"), true);
}

TEST_F(AppDelegateTest, TheMenuOpensTheDictionaryAndTheSettings) {
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.base().statusBar().choose("Open User Dictionary…"));
  desktop.base().endTurn();
  EXPECT_TRUE(desktop.base().statusBar().choose("Open Accessibility Settings…"));
  EXPECT_EQ(desktop.workspace().opened,
            (std::vector<std::string>{
                UserDict::fileURL().string(),
                "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"}));
}

// The clock beside the run loop's: one moves while the other stands.
TEST_F(AppDelegateTest, OneTickBehindALongSleepDoesAllThatWasDue) {
  HandClock clock;
  desktop.replaced.clock = &clock;
  delegate->applicationDidFinishLaunching();
  desktop.base().keyDown({.code = keyCodes::grave, .characters = u"`"});
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "pause.circle");
  clock.now += 8 * 3600;
  desktop.base().eventTaps().disable();
  testing::writeFile(UserDict::fileURL(), "слово\n");
  desktop.runLoop().advance(2);
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(KeyTap::shared().lastKeyEventAt(), clock.now);
  EXPECT_EQ(desktop.base().statusBar().icon().symbol, "keyboard");
  EXPECT_TRUE(UserDict::words().contains("слово"));
}

TEST_F(AppDelegateTest, ManyTicksWhileTheClockStandsStillDoNothing) {
  HandClock clock;
  desktop.replaced.clock = &clock;
  delegate->applicationDidFinishLaunching();
  desktop.base().keyDown({.code = 0, .characters = u"a"});
  desktop.keyboard().silence = 0;
  const auto listings = desktop.inputSources().listings;
  const auto reads = desktop.files().reads;
  desktop.runLoop().advance(3600);
  EXPECT_EQ(KeyTap::shared().word().buffer(), "a");
  EXPECT_FALSE(KeyTap::shared().word().untrackableWord());
  EXPECT_EQ(desktop.inputSources().listings, listings);
  EXPECT_EQ(desktop.files().reads, reads);
}

}  // namespace
}  // namespace tessarok
