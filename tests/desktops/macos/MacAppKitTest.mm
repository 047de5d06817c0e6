// The whole program, Objective-C++ included, on a runtime and an AppKit of the tests: from its
// launch to its end, and what it leaves behind.

#import <AppKit/AppKit.h>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

#include "desktops/macos/ObjectiveCServices.h"
#include "desktops/macos/Program.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "platform/Desktop.h"
#include "tests/desktops/macos/fake/FakeSystem.h"
#include "tests/desktops/macos/objc/FakeAppKit.h"
#include "tests/desktops/macos/objc/Runtime.h"
#include "words/ListQueue.h"

namespace tessarok::macos {
namespace {

using fakemac::fakeAppKit;
using fakemac::fakeSystem;

/// The keys of "ghbdtn", which is what comes of "привет" on the US layout.
constexpr std::int64_t kKeys[] = {5, 4, 11, 2, 17, 45};
constexpr char16_t kLetters[] = u"ghbdtn";
constexpr std::int64_t kSpace = 49;

class MacAppKitTest : public testing::Test {
 protected:
  void SetUp() override {
    auto& system = fakeSystem();
    fakeAppKit().homeDirectory = home.path();
    fakeAppKit().applicationSupport = home.path() / "Library" / "Application Support";
    system.resourceDirectory = TESSAROK_TEST_DATA;
    system.makeCurrent(&system.install("com.apple.keylayout.US"));
    system.install("com.apple.keylayout.RussianWin");
    system.onDelivered = [this](const fakemac::Event& event) {
      if (event.type == kCGEventKeyDown) screen += event.keyCode == 51 ? u"<" : event.text;
    };
  }

  /// Runs the program; `work` is done in its event loop, after the launch.
  void run(std::function<void()> work) {
    fakeAppKit().onRun = std::move(work);
    runProgram();
    expectNothingLeft();
  }

  static void expectNothingLeft() {
    EXPECT_TRUE(fakeAppKit().isTerminated);
    EXPECT_EQ(fakeAppKit().observers(), 0U);
    EXPECT_TRUE(fakeSystem().observers.empty());
    EXPECT_TRUE(fakeSystem().timers.empty());
    EXPECT_EQ(fakeSystem().tap, nullptr);
    // What lives as long as the process: the application, its delegate, the one of everything that
    // the system has, the status item with all that it shows, and the activity.
    auto live = fakemac::liveInstances();
    for (const auto* once : {"NSApplication", "TessarokApplicationDelegate", "FakeActivity",
                             "NSStatusBar", "NSWorkspace", "NSNotificationCenter"}) {
      EXPECT_LE(live[once], 1U) << once;
    }
    for (const auto* none : {"NSURL", "NSDate", "NSRunningApplication", "NSNotification",
                             "FakeObserver", "NSImageSymbolConfiguration"}) {
      EXPECT_EQ(live[none], 0U) << none;
    }
    EXPECT_LE(live["NSImage"], 1U);
  }

  static ObjectiveCServices makeServices() {
    @autoreleasepool {
      return makeObjectiveCServices();
    }
  }

  static void press(std::int64_t code, std::u16string text) {
    for (const auto type : {kCGEventKeyDown, kCGEventKeyUp}) {
      fakemac::Event event;
      event.type = type;
      event.keyCode = code;
      event.text = text;
      fakeSystem().send(event);
    }
    fakeSystem().runMainQueue();
  }

  static void typeWrongWord() {
    for (std::size_t i = 0; i < std::size(kKeys); ++i)
      press(kKeys[i], std::u16string(1, kLetters[i]));
    press(kSpace, u" ");
  }

  virtualdesktop::TemporaryDirectory home;
  /// What the application got; "<" for a Backspace.
  std::u16string screen;
};

using MacAppKitDeathTest = MacAppKitTest;

TEST_F(MacAppKitTest, CorrectsAWord) {
  run([this] {
    EXPECT_EQ(fakeAppKit().activationPolicy, NSInteger{1});
    typeWrongWord();
    EXPECT_EQ(screen, u"ghbdtn<<<<<<привет ");
  });
}

TEST_F(MacAppKitTest, ShowsItsIconInEveryState) {
  run([] {
    auto item = fakeAppKit().statusItem();
    EXPECT_EQ(item.length, -1);
    EXPECT_EQ(item.symbol, "keyboard");
    EXPECT_EQ(item.pointSize, 15);
    EXPECT_TRUE(item.isTemplate);
    EXPECT_EQ(item.title, "");
    EXPECT_FALSE(item.isDimmed);
    EXPECT_EQ(item.toolTip, "Tessarok — on");

    EXPECT_TRUE(fakeAppKit().choose("Enabled"));
    item = fakeAppKit().statusItem();
    EXPECT_EQ(item.symbol, "keyboard.chevron.compact.down");
    EXPECT_TRUE(item.isDimmed);
    EXPECT_EQ(item.toolTip, "Tessarok — paused");
    EXPECT_TRUE(fakeAppKit().choose("Enabled"));

    press(50, u"`");
    EXPECT_EQ(fakeAppKit().statusItem().symbol, "pause.circle");
    fakeSystem().advance(6);
    EXPECT_EQ(fakeAppKit().statusItem().symbol, "keyboard");

    fakeSystem().takePermission();
    fakeSystem().advance(3);
    item = fakeAppKit().statusItem();
    EXPECT_EQ(item.symbol, "keyboard.badge.ellipsis");
    EXPECT_TRUE(item.isDimmed);
    EXPECT_EQ(item.toolTip, "Tessarok — needs Accessibility permission");
  });
}

TEST_F(MacAppKitTest, ShowsTextWithoutTheSystemsSymbols) {
  fakeAppKit().missingSymbols = {"keyboard", "keyboard.chevron.compact.down"};
  run([] {
    EXPECT_EQ(fakeAppKit().statusItem().symbol, "");
    EXPECT_EQ(fakeAppKit().statusItem().title, "⌨︎");
    EXPECT_TRUE(fakeAppKit().choose("Enabled"));
    EXPECT_EQ(fakeAppKit().statusItem().title, "⌨︎⏸");
  });
}

TEST_F(MacAppKitTest, DoesWithoutAButton) {
  fakeAppKit().hasStatusButton = false;
  run([this] {
    typeWrongWord();
    EXPECT_EQ(screen, u"ghbdtn<<<<<<привет ");
  });
}

TEST_F(MacAppKitTest, BuildsItsMenu) {
  run([] {
    const auto menu = fakeAppKit().openMenu();
    ASSERT_EQ(menu.size(), 10U);
    EXPECT_EQ(menu[0].title, "Enabled");
    EXPECT_TRUE(menu[0].isEnabled);
    EXPECT_TRUE(menu[0].isOn);
    EXPECT_EQ(menu[1].title, "⌥Space — convert last word");
    EXPECT_FALSE(menu[1].isEnabled);
    EXPECT_TRUE(menu[3].isSeparator);
    ASSERT_EQ(menu[4].submenu.size(), 3U);
    EXPECT_EQ(menu[4].submenu[2].tag, 2);
    EXPECT_TRUE(menu[8].isSeparator);
    EXPECT_EQ(menu[9].title, "Quit Tessarok");
    EXPECT_EQ(menu[9].keyEquivalent, "q");
  });
}

TEST_F(MacAppKitTest, ActsOnItsMenu) {
  run([this] {
    EXPECT_FALSE(fakeAppKit().choose("⌥Space — convert last word"));
    const auto title = fakeAppKit().openMenu()[4].submenu[0].title;
    const bool wasOn = fakeAppKit().openMenu()[4].submenu[0].isOn;
    ASSERT_TRUE(fakeAppKit().choose(title));
    EXPECT_NE(fakeAppKit().openMenu()[4].submenu[0].isOn, wasOn);
    ASSERT_TRUE(fakeAppKit().choose("Open Accessibility Settings…"));
    ASSERT_TRUE(fakeAppKit().choose("Open User Dictionary…"));
    // It is laid out on a thread of its own first.
    ListQueue::drain();
    fakeSystem().runMainQueue();
    const auto folder = home.path() / "Library" / "Application Support" / "Tessarok";
    EXPECT_EQ(fakeAppKit().openedUrls,
              (std::vector<std::string>{"x-apple.systempreferences:com.apple.preference.security?"
                                        "Privacy_Accessibility",
                                        (folder / "dictionary.txt").string()}));
  });
}

TEST_F(MacAppKitTest, QuitsFromItsMenu) {
  run([] {
    ASSERT_TRUE(fakeAppKit().choose("Quit Tessarok"));
    EXPECT_TRUE(fakeAppKit().isTerminated);
    EXPECT_EQ(fakeSystem().tap, nullptr);
  });
}

TEST_F(MacAppKitTest, ASignalIsAsGoodAsQuit) {
  run([] {
    ASSERT_EQ(raise(SIGTERM), 0);
    fakeSystem().raiseSignal(SIGTERM);
    fakeSystem().runMainQueue();
    EXPECT_TRUE(fakeAppKit().isTerminated);
    EXPECT_EQ(fakeSystem().tap, nullptr);
  });
}

TEST_F(MacAppKitTest, WorksAllTheTime) {
  run([] {
    ASSERT_EQ(fakeAppKit().activities.size(), 1U);
    // Of what the system could do to a program that nobody looks at: nothing, but the Mac may
    // sleep.
    EXPECT_EQ(fakeAppKit().activities.front().second, 0xEFFFFFU);
  });
  EXPECT_EQ(fakeAppKit().activities.size(), 1U);
}

TEST_F(MacAppKitTest, ForgetsTheWordWhateverTheWorkspaceAnnounces) {
  run([this] {
    EXPECT_EQ(fakeAppKit().observers(), 6U);
    for (const auto* name :
         {"NSWorkspaceDidActivateApplicationNotification", "NSWorkspaceWillSleepNotification",
          "NSWorkspaceDidWakeNotification", "NSWorkspaceScreensDidSleepNotification",
          "NSWorkspaceSessionDidResignActiveNotification",
          "NSWorkspaceSessionDidBecomeActiveNotification"}) {
      screen.clear();
      for (std::size_t i = 0; i < std::size(kKeys); ++i) {
        if (i == 3) fakeAppKit().announce(name);
        press(kKeys[i], std::u16string(1, kLetters[i]));
      }
      press(kSpace, u" ");
      EXPECT_EQ(screen, u"ghbdtn ") << name;
    }
  });
}

TEST_F(MacAppKitTest, WaitsForThePermission) {
  fakeSystem().trusted = false;
  run([this] {
    EXPECT_EQ(fakeAppKit().statusItem().symbol, "keyboard.badge.ellipsis");
    typeWrongWord();
    EXPECT_EQ(screen, u"ghbdtn ");
    fakeSystem().trusted = true;
    fakeSystem().advance(2.5);
    EXPECT_EQ(fakeAppKit().statusItem().symbol, "keyboard");
    screen.clear();
    typeWrongWord();
    EXPECT_EQ(screen, u"ghbdtn<<<<<<привет ");
  });
}

TEST_F(MacAppKitTest, AnOlderCopyGoesFirst) {
  fakeAppKit().others = {{200, 4000, true}};
  run([] { FAIL() << "the copy went on"; });
  EXPECT_EQ(fakeAppKit().statusItems(), 0U);
  EXPECT_FALSE(std::filesystem::exists(home.path() / "Library"));
}

TEST_F(MacAppKitTest, ACopyOfUnknownAgeGoesFirstByItsNumber) {
  fakeAppKit().self.hasLaunchDate = false;
  fakeAppKit().others = {{200, 4000, true}};
  run([] { EXPECT_EQ(fakeAppKit().statusItems(), 1U); });
}

TEST_F(MacAppKitTest, SaysWhyItDoesNotStart) {
  // A file in the place of the folder.
  std::ofstream(home.path() / "Library").put('\n');
  run([] { FAIL() << "the program went on"; });
  ASSERT_EQ(fakeAppKit().logged.size(), 1U);
  EXPECT_EQ(fakeAppKit().logged.front(),
            "Tessarok: could not create instance lock directory: File exists");
}

TEST_F(MacAppKitTest, WritesWhatItLearnsBeforeItEnds) {
  run([] {
    typeWrongWord();
    // By hand, which takes the fix back.
    for (const auto type : {kCGEventKeyDown, kCGEventKeyUp}) {
      fakemac::Event event;
      event.type = type;
      event.keyCode = kSpace;
      event.flags = kCGEventFlagMaskAlternate;
      event.text = u"\u00A0";
      fakeSystem().send(event);
    }
  });
  std::ifstream rejects(home.path() / "Library/Application Support/Tessarok/rejects.txt");
  const std::string content(std::istreambuf_iterator<char>(rejects), {});
  EXPECT_NE(content.find("ghbdtn"), std::string::npos);
}

/// The menu, its items and their strings go with the item.
TEST_F(MacAppKitTest, EveryObjectOfTheStatusItemIsReleasedOnce) {
  const auto services = makeServices();
  for (int i = 0; i < 3; ++i) {
    @autoreleasepool {
      auto item = services.statusBar->createItem();
      auto menu = std::make_shared<platform::Menu>();
      int chosen = 0;
      menu->items.push_back(std::make_shared<platform::MenuItem>());
      menu->items[0]->title = "one";
      menu->items[0]->action = [&](platform::MenuItem&) { ++chosen; };
      menu->items.push_back(std::make_shared<platform::MenuItem>());
      menu->items[1]->title = "more";
      menu->items[1]->submenu = std::make_shared<platform::Menu>();
      menu->items[1]->submenu->items.push_back(std::make_shared<platform::MenuItem>());
      menu->items[1]->submenu->items[0]->title = "two";
      menu->items[1]->submenu->items[0]->action = [&](platform::MenuItem&) {
        // The item goes while it acts.
        item.reset();
        ++chosen;
      };
      EXPECT_TRUE(item->setSymbol("keyboard"));
      item->setTitle("title");
      item->setToolTip("tip");
      item->setMenu(menu);
      item->setMenu(menu);
      EXPECT_TRUE(fakeAppKit().choose("one"));
      menu->items[0]->title = "first";
      EXPECT_TRUE(fakeAppKit().choose("first"));
      EXPECT_TRUE(fakeAppKit().choose("two"));
      EXPECT_EQ(chosen, 3);
    }
    EXPECT_EQ(fakeAppKit().statusItems(), 0U);
    auto live = fakemac::liveInstances();
    for (const auto* name : {"NSStatusItem", "NSStatusBarButton", "NSImage", "NSMenu", "NSMenuItem",
                             "TessarokMenuBinding", "NSMutableArray", "NSString"}) {
      EXPECT_EQ(live[name], 0U) << name;
    }
  }
}

TEST_F(MacAppKitTest, WhatIsNoUrlIsNotOpened) {
  const auto services = makeServices();
  @autoreleasepool {
    services.workspace->openUrl("no url");
    services.workspace->openUrl("\xFF");
    services.workspace->openFile("\xFF");
  }
  EXPECT_TRUE(fakeAppKit().openedUrls.empty());
}

TEST_F(MacAppKitTest, WhatTheWorkspaceDoesNotAnnounceIsNotObserved) {
  const auto services = makeServices();
  @autoreleasepool {
    EXPECT_EQ(services.workspaceNotifications->observe(
                  platform::Notification::selectedInputSourceChanged, [] {}),
              nullptr);
  }
  EXPECT_EQ(fakeAppKit().observers(), 0U);
}

TEST_F(MacAppKitTest, TheSystemMayNameNoFolder) {
  fakeAppKit().applicationSupport.clear();
  EXPECT_EQ(makeServices().applicationSupport, std::nullopt);
}

TEST_F(MacAppKitDeathTest, TheRuntimeForgivesNothing) {
  EXPECT_DEATH(
      {
        NSObject* __unsafe_unretained gone = nil;
        @autoreleasepool {
          NSObject* object = [[NSObject alloc] init];
          gone = object;
        }
        static_cast<void>([gone class]);
      },
      "an object that is gone");
  EXPECT_DEATH(static_cast<void>([NSURL fileURLWithPath:nil]), "no string");
}

}  // namespace
}  // namespace tessarok::macos
