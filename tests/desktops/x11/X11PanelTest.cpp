// The built program between a keyboard and a panel: what the icon says while keys are corrected or
// not, and what is chosen from the menu.

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/desktops/freedesktop/Notifications.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/Pump.h"
#include "tests/desktops/freedesktop/StatusHost.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/KeyboardGrab.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Subprocess.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

class X11Panel : public ::testing::Test {
 protected:
  void start(bool expectsCorrection = true) {
    Tessarok::Setup setup;
    setup.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                         {"XDG_DATA_DIRS", TESSAROK_DATA_DIRS}};
    program_ = std::make_unique<Tessarok>(server_, setup);
    ASSERT_TRUE(host_.seesIcon());
    if (!expectsCorrection) return;
    ASSERT_TRUE(program_->says("correcting in every application")) << program_->errors();
  }
  void expectIcon(const std::string& icon, const std::string& toolTip) {
    EXPECT_TRUE(waitUntil([&] { return host_.text("IconName") == icon; }))
        << host_.text("IconName");
    EXPECT_EQ(host_.toolTip(), toolTip);
  }
  void expect(const std::string& text) { EXPECT_TRUE(window_.shows(text)) << window_.text(); }
  /// Whether the menu shows this line, soon.
  bool shows(const std::string& line) {
    return waitUntil([&] { return host_.drawnMenu().find(line + "\n") != std::string::npos; });
  }

  /// Runs a command of the program beside the one that runs; its exit status.
  int run(const std::string& command) {
    const auto output = (home_.path() / "output").string();
    Subprocess::Setup setup;
    setup.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                         {"DISPLAY", server_.name()},
                         {"WAYLAND_DISPLAY", ""},
                         {"HOME", home_.path().string()},
                         {"XDG_DATA_HOME", ""},
                         {"XDG_CONFIG_HOME", ""}};
    Subprocess started({"sh", "-c", "exec \"$0\" --resources \"$1\" \"$2\" > \"$3\" < /dev/null",
                        TESSAROK_PROGRAM, TESSAROK_TEST_DATA, command, output},
                       "tessarok", setup);
    return started.exitStatus();
  }

  virtualdesktop::TemporaryDirectory home_;
  // Only its main loop is used here.
  virtualdesktop::VirtualDesktop base_{home_.path(), TESSAROK_TEST_DATA};
  Pump pump_{base_.runLoop()};
  PrivateBus bus_;
  StatusHost host_{pump_, bus_.address()};
  XServer server_;
  GtkEntry window_{server_};
  std::unique_ptr<Tessarok> program_;
};

TEST_F(X11Panel, EnabledSwitchesTheCorrectionOffAndOn) {
  start();
  expectIcon("tessarok-on-symbolic", "Tessarok — on");
  ASSERT_TRUE(host_.choose("Enabled"));
  expectIcon("tessarok-off-dimmed-symbolic", "Tessarok — paused");
  EXPECT_TRUE(shows("[ ] Enabled"));
  server_.type("ghbdtn ");
  expect("ghbdtn ");
  ASSERT_TRUE(host_.choose("Enabled"));
  expectIcon("tessarok-on-symbolic", "Tessarok — on");
  server_.type("ghbdtn ");
  expect("ghbdtn привет ");
}

TEST_F(X11Panel, CommandsSwitchItOffAndOn) {
  start();
  EXPECT_EQ(run("off"), 0);
  expectIcon("tessarok-off-dimmed-symbolic", "Tessarok — paused");
  EXPECT_TRUE(shows("[ ] Enabled"));
  server_.type("ghbdtn ");
  expect("ghbdtn ");
  EXPECT_EQ(run("on"), 0);
  expectIcon("tessarok-on-symbolic", "Tessarok — on");
  server_.type("ghbdtn ");
  expect("ghbdtn привет ");
}

TEST_F(X11Panel, StatusTellsWhatRunsAndWhatIsMissing) {
  EXPECT_EQ(run("status"), 1);
  start();
  EXPECT_EQ(run("status"), 0);
  const auto text = readFile(home_.path() / "output");
  EXPECT_NE(text.find("x11: correction on, layout us of us, ru"), std::string::npos) << text;
  EXPECT_NE(text.find("no accessibility bus"), std::string::npos) << text;
  EXPECT_EQ(text.find("no panel"), std::string::npos) << text;
}

TEST_F(X11Panel, WhoStartsItFromAMenuInVainIsTold) {
  Notifications notifications(pump_, bus_.address());
  Subprocess::Setup setup;
  setup.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                       {"DISPLAY", ""},
                       {"WAYLAND_DISPLAY", "wayland-0"},
                       {"XDG_CURRENT_DESKTOP", "sway"},
                       {"XDG_DATA_DIRS", home_.path().string()},
                       {"HOME", home_.path().string()},
                       {"XDG_DATA_HOME", ""}};
  Subprocess started({"sh", "-c", "exec \"$0\" < /dev/null", TESSAROK_PROGRAM}, "tessarok", setup);
  EXPECT_EQ(started.exitStatus(), 2);
  const auto told = notifications.next();
  EXPECT_TRUE(told.starts_with("Tessarok was not started|this is a Wayland session")) << told;
  EXPECT_NE(told.find("install the package tessarok-fcitx5"), std::string::npos) << told;
}

TEST_F(X11Panel, QuitEndsItAndFreesTheKeyboard) {
  start();
  EXPECT_EQ(run("quit"), 0);
  EXPECT_EQ(program_->exitStatus(), 0);
  EXPECT_EQ(run("quit"), 1);
  server_.type("ghbdtn ");
  expect("ghbdtn ");
}

TEST_F(X11Panel, ThePauseIsShownUntilItEnds) {
  start();
  server_.tap(kGrave);
  expectIcon("tessarok-paused-dimmed-symbolic", "Tessarok — пауза на 5 сек, сейчас включится");
  server_.type(" ghbdtn ");
  expect("` ghbdtn ");
  expectIcon("tessarok-on-symbolic", "Tessarok — on");
  server_.type("ghbdtn ");
  expect("` ghbdtn привет ");
}

TEST_F(X11Panel, MissingLayoutsNeedAttention) {
  server_.setLayouts("us");
  start(false);
  expectIcon("tessarok-attention-dimmed-symbolic",
             "Tessarok — enable compatible Russian and QWERTY layouts, then select one of them");
  server_.setLayouts("us,ru");
  expectIcon("tessarok-on-symbolic", "Tessarok — on");
}

TEST_F(X11Panel, AKeyboardThatIsTakenNeedsAttention) {
  std::optional<KeyboardGrab> other(server_);
  start(false);
  EXPECT_TRUE(
      waitUntil([&] { return host_.text("IconName") == "tessarok-attention-dimmed-symbolic"; }));
  other.reset();
  expectIcon("tessarok-on-symbolic", "Tessarok — on");
}

TEST_F(X11Panel, TheShiftFixIsSwitchedForWhatIsTyped) {
  start();
  server_.type("GHbdtn ");
  expect("Привет ");
  server_.lockGroup(1);
  ASSERT_TRUE(host_.choose("Shift-фикс (ПРивет → Привет)"));
  EXPECT_TRUE(shows("[ ] Shift-фикс (ПРивет → Привет)"));
  server_.type("GHbdtn ");
  expect("Привет ПРивет ");
}

TEST_F(X11Panel, AWordPackIsSwitched) {
  start();
  ASSERT_TRUE(host_.choose("Геймерский"));
  EXPECT_TRUE(shows("  [x] Геймерский"));
  ASSERT_TRUE(host_.choose("IT / разработка"));
  EXPECT_TRUE(shows("  [ ] IT / разработка"));
}

TEST_F(X11Panel, ThePanelIsRestarted) {
  start();
  host_.leave();
  StatusHost restarted(pump_, bus_.address());
  ASSERT_TRUE(restarted.seesIcon());
  EXPECT_EQ(restarted.toolTip(), "Tessarok — on");
  ASSERT_TRUE(restarted.choose("Enabled"));
  EXPECT_TRUE(waitUntil([&] { return restarted.toolTip() == "Tessarok — paused"; }));
}

TEST_F(X11Panel, ABusThatEndsInTheMiddleOfAWordIsNoHindrance) {
  start();
  server_.type("ghb");
  bus_.stop();
  server_.type("dtn ");
  expect("привет ");
  EXPECT_TRUE(program_->says("session bus")) << program_->errors();
  server_.type("vbh ");
  expect("привет мир ");
  EXPECT_EQ(program_->errors().find("session bus"), program_->errors().rfind("session bus"))
      << program_->errors();
  program_->send(SIGTERM);
  EXPECT_EQ(program_->exitStatus(), 0) << program_->errors();
}

TEST_F(X11Panel, QuitEndsTheProgramAndFreesTheKeyboard) {
  start();
  EXPECT_TRUE(server_.isKeyboardHeld());
  ASSERT_TRUE(host_.choose("Quit Tessarok"));
  EXPECT_EQ(program_->exitStatus(), 0) << program_->errors();
  EXPECT_FALSE(server_.isKeyboardHeld());
  server_.type("ghbdtn ");
  expect("ghbdtn ");
}

}  // namespace
}  // namespace tessarok::testing
