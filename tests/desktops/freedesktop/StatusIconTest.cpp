// The status icon as a panel sees it, driven by the real program.

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/AppDelegate.h"
#include "desktops/freedesktop/IconTheme.h"
#include "desktops/freedesktop/StatusNotifierItem.h"
#include "desktops/freedesktop/StatusSymbol.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/SilentBus.h"
#include "tests/desktops/freedesktop/StatusHost.h"
#include "tests/support/TestFiles.h"
#include "typing/KeyCodes.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"

namespace tessarok::testing {
namespace {

constexpr const char* kOn = "Tessarok — on";

/// The program running on a bus with a panel.
class StatusIcon : public ::testing::Test {
 protected:
  void SetUp() override { delegate_->applicationDidFinishLaunching(); }
  void TearDown() override {
    delegate_->applicationWillTerminate();
    IgnoreList::flush();
  }
  bool waitForToolTip(const std::string& toolTip) {
    return host_.seesIcon() && host_.toolTip() == toolTip;
  }

  PrivateBus bus_;
  BusDesktop desktop_{bus_.address()};
  StatusHost host_{desktop_.runLoop(), bus_.address()};
  std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>();
};

TEST_F(StatusIcon, RegistersAndDescribesItself) {
  ASSERT_TRUE(host_.seesIcon());
  EXPECT_TRUE(host_.registered().back().starts_with("org.kde.StatusNotifierItem-"));
  EXPECT_EQ(host_.text("Id"), "tessarok");
  EXPECT_EQ(host_.text("Title"), "Tessarok");
  EXPECT_EQ(host_.text("Category"), "SystemServices");
}

TEST_F(StatusIcon, IsOn) {
  ASSERT_TRUE(waitForToolTip(kOn));
  EXPECT_EQ(host_.text("IconName"), "tessarok-on-symbolic");
  EXPECT_EQ(host_.text("IconThemePath"), "");
  EXPECT_EQ(host_.text("IconAccessibleDesc"), "Tessarok: on");
  EXPECT_TRUE(host_.pixels().empty());
}

TEST_F(StatusIcon, IsOffAndDimmed) {
  ASSERT_TRUE(host_.seesIcon());
  ASSERT_TRUE(host_.choose("Enabled"));
  ASSERT_TRUE(desktop_.runLoop().until([] { return !KeyTap::shared().enabled; }));
  EXPECT_EQ(host_.text("IconName"), "tessarok-off-dimmed-symbolic");
  EXPECT_EQ(host_.toolTip(), "Tessarok — paused");
  EXPECT_EQ(host_.text("Status"), "Active");
}

TEST_F(StatusIcon, ShowsThePauseUntilItEnds) {
  ASSERT_TRUE(host_.seesIcon());
  desktop_.base().keyDown({.code = keyCodes::grave});
  EXPECT_EQ(host_.text("IconName"), "tessarok-paused-dimmed-symbolic");
  EXPECT_EQ(host_.toolTip(), "Tessarok — пауза на 5 сек, сейчас включится");
  desktop_.base().wait(6);
  EXPECT_EQ(host_.text("IconName"), "tessarok-on-symbolic");
}

TEST_F(StatusIcon, NeedsAttentionWithoutAPairOfLayouts) {
  ASSERT_TRUE(host_.seesIcon());
  desktop_.base().enableInputSources({"com.apple.keylayout.US"});
  EXPECT_EQ(host_.text("IconName"), "tessarok-attention-dimmed-symbolic");
  EXPECT_EQ(host_.toolTip(),
            "Tessarok — enable compatible Russian and QWERTY layouts, then select one of them");
}

TEST_F(StatusIcon, AnnouncesOnlyWhatHasChanged) {
  ASSERT_TRUE(waitForToolTip(kOn));
  static_cast<void>(host_.takeSignals());
  desktop_.base().wait(10);
  ASSERT_TRUE(waitForToolTip(kOn));
  EXPECT_EQ(host_.takeSignals(), std::vector<std::string>());
  desktop_.base().keyDown({.code = keyCodes::grave});
  ASSERT_TRUE(waitForToolTip("Tessarok — пауза на 5 сек, сейчас включится"));
  const auto signals = host_.takeSignals();
  EXPECT_EQ(std::count(signals.begin(), signals.end(), "NewToolTip"), 1);
  EXPECT_GE(std::count(signals.begin(), signals.end(), "NewIcon"), 1);
}

TEST_F(StatusIcon, RegistersAgainWhenThePanelWasRestarted) {
  ASSERT_TRUE(host_.seesIcon());
  host_.leave();
  const auto restarted = std::make_unique<StatusHost>(desktop_.runLoop(), bus_.address());
  ASSERT_TRUE(restarted->seesIcon());
  EXPECT_EQ(restarted->toolTip(), kOn);
  EXPECT_EQ(restarted->registered().back(), host_.registered().back());
}

TEST_F(StatusIcon, GoesWithTheProgram) {
  ASSERT_TRUE(host_.seesIcon());
  delegate_->applicationWillTerminate();
  delegate_ = std::make_shared<AppDelegate>();
  EXPECT_EQ(host_.text("Id"), "");
}

/// The program where nothing shows icons, at least not yet.
class WithoutPanel : public ::testing::Test {
 protected:
  void launch(const std::string& address) {
    desktop_ = std::make_unique<BusDesktop>(address);
    delegate_ = std::make_shared<AppDelegate>();
    delegate_->applicationDidFinishLaunching();
  }
  /// On a bus that lets it in at once.
  void launch() {
    launch(bus_.address());
    auto& bus = *desktop_->session();
    bool isIn = false;
    const auto slot =
        bus.call(bus.methodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus.Peer", "Ping"),
                 [&isIn](sd_bus_message&) { isIn = true; });
    ASSERT_TRUE(desktop_->runLoop().until([&isIn] { return isIn; }));
  }
  void TearDown() override {
    delegate_->applicationWillTerminate();
    IgnoreList::flush();
    delegate_.reset();
  }
  void waitForPanel() {
    desktop_->base().wait(freedesktop::StatusNotifierItem::kPanelPatience + 1);
  }
  void expectToWork() {
    for (const KeyCode code : {5, 4, 11, 2, 17, 45})
      desktop_->base().keyDown({.code = code});
    desktop_->base().keyDown({.code = keyCodes::space});
    EXPECT_TRUE(desktop_->base().textField().text().ends_with("привет "));
  }

  PrivateBus bus_;
  std::unique_ptr<BusDesktop> desktop_;
  std::shared_ptr<AppDelegate> delegate_;
};

TEST_F(WithoutPanel, SaysSoOnceAndWorks) {
  launch();
  waitForPanel();
  EXPECT_EQ(desktop_->systemLog().take(),
            std::vector<std::string>{"Tessarok: no panel shows status icons here; the program "
                                     "runs on without its icon"});
  waitForPanel();
  EXPECT_EQ(desktop_->systemLog().take(), std::vector<std::string>());
  expectToWork();
}

TEST_F(WithoutPanel, IsSeenByOneThatComesLate) {
  launch();
  waitForPanel();
  StatusHost host(desktop_->runLoop(), bus_.address());
  ASSERT_TRUE(host.seesIcon());
  EXPECT_EQ(host.text("IconName"), "tessarok-on-symbolic");
}

TEST_F(WithoutPanel, SaysNothingWhenThereIsOne) {
  launch();
  StatusHost host(desktop_->runLoop(), bus_.address());
  ASSERT_TRUE(host.seesIcon());
  EXPECT_EQ(host.toolTip(), kOn);
  waitForPanel();
  EXPECT_EQ(desktop_->systemLog().take(), std::vector<std::string>());
}

TEST_F(WithoutPanel, RunsWithoutABusAndSaysSoOnce) {
  launch("");
  EXPECT_EQ(desktop_->systemLog().take(),
            std::vector<std::string>{"Tessarok: there is no session bus; the program runs on "
                                     "without its icon"});
  EXPECT_EQ(desktop_->statusBar().createItem(), nullptr);
  EXPECT_EQ(desktop_->systemLog().take(), std::vector<std::string>());
  expectToWork();
}

TEST_F(WithoutPanel, RunsOnWhenTheBusEnds) {
  launch();
  {
    StatusHost host(desktop_->runLoop(), bus_.address());
    ASSERT_TRUE(host.seesIcon());
  }
  bus_.stop();
  std::vector<std::string> said;
  ASSERT_TRUE(desktop_->runLoop().until([&] {
    said = desktop_->systemLog().take();
    return !said.empty();
  }));
  ASSERT_EQ(said.size(), 1U);
  EXPECT_TRUE(said[0].starts_with("Tessarok: the session bus is lost (")) << said[0];
  // Of the panel, too, there is nothing more to be said.
  waitForPanel();
  EXPECT_EQ(desktop_->systemLog().take(), std::vector<std::string>());
  desktop_->base().keyDown({.code = keyCodes::grave});
  desktop_->base().wait(6);
  // Ends the word that began with the pause key's character.
  desktop_->base().keyDown({.code = keyCodes::space});
  expectToWork();
}

TEST_F(WithoutPanel, RunsWithABusThatNeverAnswersAndSaysSoOnce) {
  const SilentBus silent;
  launch(silent.address());
  expectToWork();
  waitForPanel();
  std::vector<std::string> said;
  ASSERT_TRUE(desktop_->runLoop().until([&] {
    said = desktop_->systemLog().take();
    return !said.empty();
  }));
  EXPECT_EQ(said,
            std::vector<std::string>{"Tessarok: the session bus is lost (Connection timed out); "
                                     "the program runs on without its icon"});
  waitForPanel();
  EXPECT_EQ(desktop_->systemLog().take(), std::vector<std::string>());
}

/// Icons of a program whose theme files no panel finds by itself.
class IconFiles : public ::testing::Test {
 protected:
  struct Shown {
    std::string name;
    std::string folder;
    std::vector<StatusHost::Pixels> pixels;
  };
  Shown show(const freedesktop::IconTheme& theme, const char* symbol, bool dimmed) {
    freedesktop::StatusNotifierBar bar(desktop_.session(), desktop_.runLoop(), desktop_.systemLog(),
                                       theme);
    const auto item = bar.createItem();
    EXPECT_TRUE(item->setSymbol(symbol));
    item->setAppearsDisabled(dimmed);
    const auto before = host_.registered().size();
    EXPECT_TRUE(desktop_.runLoop().until([&] { return host_.registered().size() > before; }));
    return {host_.text("IconName"), host_.text("IconThemePath"), host_.pixels()};
  }

  PrivateBus bus_;
  BusDesktop desktop_{bus_.address()};
  StatusHost host_{desktop_.runLoop(), bus_.address()};
};

TEST_F(IconFiles, BesideTheProgramAreShownToThePanel) {
  const auto shown = show({{}, TESSAROK_ICONS}, "keyboard", false);
  EXPECT_EQ(shown.name, "tessarok-on-symbolic");
  EXPECT_EQ(shown.folder, TESSAROK_ICONS);
  EXPECT_TRUE(shown.pixels.empty());
}

TEST_F(IconFiles, ThatAreMissingAreReplacedByPixels) {
  std::set<std::string> drawings;
  for (const auto* symbol :
       {"keyboard", "pause.circle", "keyboard.badge.ellipsis", "keyboard.chevron.compact.down"}) {
    for (const bool dimmed : {false, true}) {
      const auto shown = show({{"/nonexistent"}, std::nullopt}, symbol, dimmed);
      EXPECT_EQ(shown.name, "");
      ASSERT_EQ(shown.pixels.size(), 1U);
      EXPECT_EQ(shown.pixels[0].width, 22);
      EXPECT_EQ(shown.pixels[0].height, 22);
      ASSERT_EQ(shown.pixels[0].bytes.size(), 22U * 22 * 4);
      const auto& bytes = shown.pixels[0].bytes;
      drawings.emplace(bytes.begin(), bytes.end());
    }
  }
  EXPECT_EQ(drawings.size(), 8U);
}

TEST_F(IconFiles, ExistForEverySymbolInBothVariants) {
  for (const auto* symbol :
       {"keyboard", "pause.circle", "keyboard.badge.ellipsis", "keyboard.chevron.compact.down"}) {
    for (const bool dimmed : {false, true}) {
      const auto icon = freedesktop::StatusSymbol::named(symbol)->iconName(dimmed);
      EXPECT_EQ(freedesktop::IconTheme({TESSAROK_ICONS}, std::nullopt).folderFor(icon), "") << icon;
    }
  }
}

/// A disk may take its time by then.
TEST(IconTheme, LooksForNothingWhenItIsAsked) {
  const virtualdesktop::TemporaryDirectory folder;
  const auto file = folder.path() / "hicolor/scalable/status/tessarok-on-symbolic.svg";
  writeFile(file, "");
  const freedesktop::IconTheme theme({}, folder.path());
  std::filesystem::remove(file);
  EXPECT_EQ(theme.folderFor("tessarok-on-symbolic"), folder.path().string());
  EXPECT_EQ(theme.folderFor("tessarok-off-symbolic"), std::nullopt);
}

TEST_F(IconFiles, OfAnUnknownSymbolAreReplacedByATitle) {
  freedesktop::StatusNotifierBar bar(desktop_.session(), desktop_.runLoop(), desktop_.systemLog(),
                                     {{TESSAROK_ICONS}, std::nullopt});
  const auto item = bar.createItem();
  ASSERT_TRUE(host_.seesIcon());
  EXPECT_FALSE(item->setSymbol("hare"));
  item->setTitle("⌨︎⏸");
  EXPECT_EQ(host_.text("XAyatanaLabel"), "⌨︎⏸");
  EXPECT_TRUE(item->setSymbol("keyboard"));
  EXPECT_EQ(host_.text("XAyatanaLabel"), "");
}

}  // namespace
}  // namespace tessarok::testing
