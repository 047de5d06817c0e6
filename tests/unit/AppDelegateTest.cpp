#include <cerrno>
#include <gtest/gtest.h>

#include "AppDelegate.h"
#include "IgnoreList.h"
#include "KeyTap.h"
#include "UserDict.h"
#include "support/ChildProcess.h"
#include "support/FakeDesktop.h"
#include "support/TestFiles.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using platform::FileLockFailure;
using testing::FakeDesktop;
using Log = std::vector<std::string>;

constexpr const char* kKeptInMemory =
    "Tessarok: another instance is already running; what is learned here stays in memory";

class AppDelegateTest : public ::testing::Test {
 protected:
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
  ASSERT_FALSE(desktop.files().createDirectories(desktop.folder()).has_value());
  const auto held = desktop.files().lockExclusively(desktop.folder() / "instance.lock");
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(desktop.application().terminationRequested);
  EXPECT_EQ(desktop.systemLog().take(), Log{"Tessarok: another instance is already running"});
  EXPECT_FALSE(fs::exists(UserDict::fileURL()));
  EXPECT_FALSE(KeyTap::shared().tapExists());
  EXPECT_EQ(desktop.statusBar().menu(), nullptr);
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
  desktop.clock().advance(60);
  desktop.inputSourceNotifications().announce("kTISNotifySelectedKeyboardInputSourceChanged");
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
  desktop.clock().advance(10);
  EXPECT_FALSE(delegate->tapRunning());
  desktop.base().setTrusted(true);
  desktop.clock().advance(1.9);
  EXPECT_FALSE(delegate->tapRunning());
  desktop.clock().advance(0.1);
  EXPECT_TRUE(delegate->tapRunning());
}

TEST_F(AppDelegateTest, AnAddedLayoutIsNoticedWithoutARestart) {
  auto& sources = desktop.inputSources();
  const auto russian = sources.layouts.back();
  sources.layouts.pop_back();
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(desktop.statusBar().icon().symbol, "keyboard.badge.ellipsis");
  sources.layouts.push_back(russian);
  desktop.inputSourceNotifications().announce("kTISNotifyEnabledKeyboardInputSourcesChanged");
  EXPECT_EQ(desktop.statusBar().icon().symbol, "keyboard");
  sources.layouts.pop_back();
  desktop.inputSourceNotifications().announce("kTISNotifyEnabledKeyboardInputSourcesChanged");
  EXPECT_EQ(desktop.statusBar().icon().symbol, "keyboard.badge.ellipsis");
}

TEST_F(AppDelegateTest, OfManyCopiesOneWritesWhatIsLearned) {
  ASSERT_FALSE(desktop.files().createDirectories(desktop.folder()).has_value());
  const auto held = desktop.files().lockExclusively(desktop.folder() / ".learning.lock");
  delegate = std::make_shared<AppDelegate>(AppDelegate::Instances::many);
  delegate->applicationDidFinishLaunching();
  EXPECT_FALSE(desktop.application().terminationRequested);
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(desktop.systemLog().take(), Log{kKeptInMemory});
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_FALSE(fs::exists(desktop.folder() / "rejects.txt"));
}

TEST_F(AppDelegateTest, TheFirstOfManyCopiesWrites) {
  delegate = std::make_shared<AppDelegate>(AppDelegate::Instances::many);
  delegate->applicationDidFinishLaunching();
  EXPECT_EQ(desktop.systemLog().take(), Log{});
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_TRUE(fs::exists(desktop.folder() / "rejects.txt"));
}

TEST_F(AppDelegateTest, TheOnlyCopyRunsBesideOneOfManyThatWrites) {
  ASSERT_FALSE(desktop.files().createDirectories(desktop.folder()).has_value());
  const auto held = desktop.files().lockExclusively(desktop.folder() / ".learning.lock");
  delegate = std::make_shared<AppDelegate>(AppDelegate::Instances::onlyOne);
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(desktop.systemLog().take(), Log{kKeptInMemory});
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_FALSE(fs::exists(desktop.folder() / "rejects.txt"));
}

TEST_F(AppDelegateTest, ACopyOfManyLeavesTheFilesToTheOnlyOne) {
  testing::ChildProcess other({"--resources", TESSAROK_TEST_DATA, "replay", "--home",
                               desktop.files().homeDirectory().string()});
  ASSERT_TRUE(other.send("{\"print\": [\"tap\"]}\n"));
  ASSERT_TRUE(other.receive().has_value());
  delegate = std::make_shared<AppDelegate>(AppDelegate::Instances::many);
  delegate->applicationDidFinishLaunching();
  EXPECT_TRUE(delegate->tapRunning());
  EXPECT_EQ(desktop.systemLog().take(), Log{kKeptInMemory});
  IgnoreList::recordRejection("слово");
  delegate->applicationWillTerminate();
  EXPECT_FALSE(fs::exists(desktop.folder() / "rejects.txt"));
  EXPECT_EQ(other.finish(), 0);
}

}  // namespace
}  // namespace tessarok
