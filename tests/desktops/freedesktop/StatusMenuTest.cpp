// The menu as a panel sees it; every action is chosen through the bus.

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

#include "app/AppDelegate.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/StatusHost.h"
#include "tests/support/TestFiles.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok::testing {
namespace {

/// The program on a bus with a panel, where `xdg-open` and others write down what they are given.
class StatusMenu : public ::testing::Test {
 protected:
  void SetUp() override {
    ::setenv("PATH", (programs_.path().string() + ":/usr/bin:/bin").c_str(), 1);
    delegate_->applicationDidFinishLaunching();
    ASSERT_TRUE(host_.seesIcon());
  }
  void TearDown() override {
    delegate_->applicationWillTerminate();
    IgnoreList::flush();
  }
  /// A program that writes its arguments to a file of its name.
  void addProgram(const std::string& name) {
    const auto file = programs_.path() / name;
    writeFile(file, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + output(name) + ".new'\nmv '" +
                        output(name) + ".new' '" + output(name) + "'\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  }
  std::string output(const std::string& name) {
    return (programs_.path() / name).string() + ".out";
  }
  /// What the program was started with, once it has ended.
  std::string argumentsOf(const std::string& name) {
    EXPECT_TRUE(desktop_.runLoop().until([&] {
      return std::filesystem::exists(output(name)) && desktop_.programs().running() == 0;
    }));
    return std::filesystem::exists(output(name)) ? readFile(output(name)) : "";
  }
  bool choose(const std::string& label) {
    if (!host_.choose(label)) return false;
    // The action runs on the turn after the answer.
    return !host_.menu().empty();
  }

  virtualdesktop::TemporaryDirectory programs_;
  PrivateBus bus_;
  BusDesktop desktop_{bus_.address()};
  StatusHost host_{desktop_.runLoop(), bus_.address()};
  std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>();
};

TEST_F(StatusMenu, ShowsEverythingThatTheProgramOffers) {
  EXPECT_EQ(host_.drawnMenu(),
            "[x] Enabled\n"
            "- ⌥Space — convert last word\n"
            "- ` / § (EN) — пауза на 5 сек\n"
            "---\n"
            "Словари исключений\n"
            "  [x] IT / разработка\n"
            "  [x] Интернет-сленг\n"
            "  [ ] Геймерский\n"
            "[x] Shift-фикс (ПРивет → Привет)\n"
            "Open User Dictionary…\n"
            "Open Accessibility Settings…\n"
            "---\n"
            "Quit Tessarok\n");
}

TEST_F(StatusMenu, SwitchesTheProgramOffAndOn) {
  ASSERT_TRUE(choose("Enabled"));
  EXPECT_FALSE(KeyTap::shared().enabled);
  EXPECT_TRUE(host_.drawnMenu().starts_with("[ ] Enabled\n"));
  ASSERT_TRUE(choose("Enabled"));
  EXPECT_TRUE(KeyTap::shared().enabled);
  EXPECT_TRUE(host_.drawnMenu().starts_with("[x] Enabled\n"));
}

TEST_F(StatusMenu, TellsPanelsThatKeepTheMenuWhatHasChanged) {
  static_cast<void>(host_.takeSignals());
  ASSERT_TRUE(choose("Enabled"));
  const auto signals = host_.takeSignals();
  EXPECT_EQ(std::count(signals.begin(), signals.end(), "ItemsPropertiesUpdated"), 1);
  EXPECT_EQ(std::count(signals.begin(), signals.end(), "LayoutUpdated"), 0);
}

TEST_F(StatusMenu, SwitchesTheShiftFixAndSavesIt) {
  ASSERT_TRUE(choose("Shift-фикс (ПРивет → Привет)"));
  EXPECT_FALSE(KeyTap::shared().shiftFixEnabled);
  EXPECT_EQ(desktop_.userDefaults().boolean("shiftLagFix"), false);
  EXPECT_NE(host_.drawnMenu().find("[ ] Shift-фикс"), std::string::npos);
}

TEST_F(StatusMenu, SwitchesEachWordPackAndSavesIt) {
  ASSERT_TRUE(choose("IT / разработка"));
  ASSERT_TRUE(choose("Геймерский"));
  EXPECT_EQ(desktop_.userDefaults().boolean("pack.it"), false);
  EXPECT_EQ(desktop_.userDefaults().boolean("pack.chat"), std::nullopt);
  EXPECT_EQ(desktop_.userDefaults().boolean("pack.gaming"), true);
  const auto menu = host_.drawnMenu();
  EXPECT_NE(menu.find("  [ ] IT / разработка\n  [x] Интернет-сленг\n  [x] Геймерский\n"),
            std::string::npos)
      << menu;
}

TEST_F(StatusMenu, OpensTheUserDictionaryInTheDefaultProgram) {
  addProgram("xdg-open");
  ASSERT_TRUE(choose("Open User Dictionary…"));
  EXPECT_EQ(argumentsOf("xdg-open"), UserDict::fileURL().string() + "\n");
  EXPECT_TRUE(std::filesystem::exists(UserDict::fileURL()));
}

TEST_F(StatusMenu, OpensTheKeyboardSettingsOfTheDesktop) {
  ::setenv("XDG_CURRENT_DESKTOP", "XFCE", 1);
  addProgram("xfce4-keyboard-settings");
  ASSERT_TRUE(choose("Open Accessibility Settings…"));
  argumentsOf("xfce4-keyboard-settings");
}

TEST_F(StatusMenu, QuitsTheProgram) {
  ASSERT_TRUE(choose("Quit Tessarok"));
  EXPECT_TRUE(desktop_.application().terminationRequested);
}

TEST_F(StatusMenu, DoesNothingForItemsThatOnlyInform) {
  const auto before = host_.drawnMenu();
  ASSERT_TRUE(choose("⌥Space — convert last word"));
  ASSERT_TRUE(choose("Словари исключений"));
  EXPECT_EQ(host_.drawnMenu(), before);
}

TEST_F(StatusMenu, DoesNothingWhenAnItemIsOnlyPointedAt) {
  const auto number = host_.menu().front().number;
  EXPECT_TRUE(host_.sendEvent(number, "hovered"));
  EXPECT_TRUE(host_.sendEvent(number, "opened"));
  EXPECT_TRUE(KeyTap::shared().enabled);
}

TEST_F(StatusMenu, RefusesItemsThatItDoesNotHave) {
  EXPECT_FALSE(host_.sendEvent(999, "clicked"));
  EXPECT_FALSE(host_.sendEvent(-1, "clicked"));
}

}  // namespace
}  // namespace tessarok::testing
