// What a running corrector tells the person by itself, and what they may ask of it over the bus.

#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/AppDelegate.h"
#include "desktops/freedesktop/SessionContact.h"
#include "desktops/layouts/KeyTable.h"
#include "platform/SerialQueue.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/Notifications.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/StatusHost.h"
#include "tests/support/TestFiles.h"
#include "typing/KeyCodes.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"

namespace tessarok::testing {
namespace {

using freedesktop::BusSlot;
using freedesktop::RemoteControl;
using freedesktop::SessionContact;
using layouts::KeyTable;

class Contact : public ::testing::Test {
 protected:
  void SetUp() override {
    launch();
    makeContact();
  }
  void TearDown() override {
    contact_.reset();
    delegate_->applicationWillTerminate();
    IgnoreList::flush();
  }
  void launch() {
    writeFile(program_, "the version that runs");
    delegate_->applicationDidFinishLaunching();
  }
  void makeContact() {
    contact_.reset();
    contact_.emplace(
        SessionContact::Surroundings{.session = desktop_.session(),
                                     .loop = desktop_.runLoop(),
                                     .queue = *diskQueue_,
                                     .log = desktop_.systemLog(),
                                     .settings = desktop_.userDefaults(),
                                     .delegate = *delegate_},
        RemoteControl::Desktop{
            .name = "virtual",
            .obstacles = [] { return std::vector<std::string>{"there is nothing to see"}; }},
        program_);
  }
  /// Calls a method of the corrector; whether it answered.
  bool call(const char* member) {
    std::optional<bool> isDone;
    auto& bus = asker_.bus();
    const auto slot = bus.call(bus.methodCall(RemoteControl::kName, RemoteControl::kPath,
                                              RemoteControl::kInterface, member),
                               [&isDone](sd_bus_message& reply) {
                                 isDone = sd_bus_message_is_method_error(&reply, nullptr) == 0;
                               });
    return desktop_.runLoop().until([&] { return isDone.has_value(); }) && *isDone;
  }
  /// A property that is a text, or the first of several.
  std::string property(const char* name, const char* type = "s") {
    std::optional<std::string> value;
    auto& bus = asker_.bus();
    auto message = bus.methodCall(RemoteControl::kName, RemoteControl::kPath,
                                  "org.freedesktop.DBus.Properties", "Get");
    sd_bus_message_append(message.get(), "ss", RemoteControl::kInterface, name);
    const auto slot = bus.call(std::move(message), [&](sd_bus_message& reply) {
      const char* text = "";
      sd_bus_message_enter_container(&reply, 'v', type);
      if (*type == 'a') sd_bus_message_enter_container(&reply, 'a', type + 1);
      sd_bus_message_read_basic(&reply, 's', &text);
      value = text;
    });
    EXPECT_TRUE(desktop_.runLoop().until([&] { return value.has_value(); }));
    return value.value_or("");
  }
  /// Time jumps, though not before everybody is let in: a bus has ten seconds for that.
  void letPass(double seconds) {
    ASSERT_EQ(property("Desktop"), "virtual");
    desktop_.base().wait(seconds);
  }
  bool isEnabled() {
    std::optional<int> value;
    auto& bus = asker_.bus();
    auto message = bus.methodCall(RemoteControl::kName, RemoteControl::kPath,
                                  "org.freedesktop.DBus.Properties", "Get");
    sd_bus_message_append(message.get(), "ss", RemoteControl::kInterface, "Enabled");
    const auto slot = bus.call(std::move(message), [&](sd_bus_message& reply) {
      value = -1;
      sd_bus_message_read(&reply, "v", "b", &*value);
    });
    EXPECT_TRUE(desktop_.runLoop().until([&] { return value.has_value(); }));
    EXPECT_NE(value, -1);
    return value == 1;
  }
  /// In the English layout.
  void type(std::string_view keys) {
    for (const char key : keys) {
      const auto stroke = key == ' '
                              ? KeyTable::Stroke{keyCodes::space, false}
                              : KeyTable::english().strokeFor(static_cast<char32_t>(key)).value();
      desktop_.base().stroke(stroke);
      desktop_.base().wait(kBetweenKeys);
    }
  }

  /// Seconds.
  static constexpr double kBetweenKeys = 0.1;
  virtualdesktop::TemporaryDirectory folder_;
  std::filesystem::path program_ = folder_.path() / "tessarok";
  PrivateBus bus_;
  BusDesktop desktop_{bus_.address()};
  Notifications notifications_{desktop_.runLoop(), bus_.address()};
  FakeService asker_{desktop_.runLoop(), bus_.address()};
  std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>();
  std::unique_ptr<platform::SerialQueue> diskQueue_ =
      desktop_.serialQueues().create("app.tessarok.program");
  std::optional<SessionContact> contact_;
};

TEST_F(Contact, TheFirstStartIsExplainedOnce) {
  const auto first = notifications_.next();
  EXPECT_TRUE(first.find("ghbdtn becomes привет") != std::string::npos) << first;
  EXPECT_TRUE(first.find("takes a correction back") != std::string::npos) << first;
  EXPECT_TRUE(first.find("switches Tessarok off") != std::string::npos) << first;
  ASSERT_TRUE(desktop_.runLoop().until(
      [&] { return desktop_.userDefaults().boolean(SessionContact::kWelcomedKey) == true; }));
  makeContact();
  // What was asked before the answer to this has been dealt with.
  EXPECT_EQ(property("Desktop"), "virtual");
  EXPECT_EQ(notifications_.count(), 1);
}

/// As settings do that cannot be written or read.
TEST_F(Contact, TheFirstStartIsExplainedOnceThoughTheSettingsForgetIt) {
  ASSERT_FALSE(notifications_.next().empty());
  ASSERT_TRUE(desktop_.runLoop().until(
      [&] { return desktop_.userDefaults().boolean(SessionContact::kWelcomedKey) == true; }));
  desktop_.userDefaults().setBoolean(SessionContact::kWelcomedKey, false);
  makeContact();
  letPass(20);
  EXPECT_EQ(property("Desktop"), "virtual");
  EXPECT_EQ(notifications_.count(), 1);
}

/// A launch, and nobody yet who tells anything.
class FirstContact : public Contact {
 protected:
  void SetUp() override { launch(); }
};

TEST_F(FirstContact, WhatCannotBeRememberedIsNotShown) {
  desktop_.base().files().failNextWrite();
  makeContact();
  letPass(20);
  EXPECT_EQ(property("Desktop"), "virtual");
  EXPECT_EQ(notifications_.count(), 0);
}

TEST_F(FirstContact, TheFirstStartIsExplainedWhenTheCorrectionBegins) {
  desktop_.base().enableInputSources({"com.apple.keylayout.US"});
  makeContact();
  letPass(20);
  EXPECT_EQ(property("Correction"), "waiting");
  EXPECT_EQ(notifications_.count(), 0);
  desktop_.base().enableInputSources({"com.apple.keylayout.US", "com.apple.keylayout.RussianWin"});
  letPass(20);
  EXPECT_NE(notifications_.next().find("ghbdtn"), std::string::npos);
}

TEST_F(Contact, IsSwitchedOffAndOn) {
  ASSERT_EQ(property("Correction"), "on");
  ASSERT_TRUE(call("Off"));
  EXPECT_FALSE(KeyTap::shared().enabled);
  EXPECT_EQ(property("Correction"), "off");
  ASSERT_TRUE(call("On"));
  EXPECT_TRUE(KeyTap::shared().enabled);
  EXPECT_EQ(property("Correction"), "on");
}

// A script of the session may say so at any time.
TEST_F(Contact, SwitchedOnWhereItIsOnItKeepsTheWordThatIsBeingTyped) {
  type("ghb");
  ASSERT_TRUE(call("On"));
  type("dtn ");
  EXPECT_EQ(desktop_.base().textField().text(), "привет ");
}

TEST_F(Contact, SwitchedOffAndOnItLeavesTheWordAlone) {
  type("ghb");
  ASSERT_TRUE(call("Off"));
  ASSERT_TRUE(call("On"));
  type("dtn ");
  EXPECT_EQ(desktop_.base().textField().text(), "ghbdtn ");
}

TEST_F(Contact, TheMenuShowsWhatWasSwitched) {
  StatusHost panel(desktop_.runLoop(), bus_.address());
  ASSERT_TRUE(panel.seesIcon());
  ASSERT_TRUE(call("Off"));
  EXPECT_EQ(panel.menu().front().checked, false);
  EXPECT_EQ(panel.toolTip(), "Tessarok — paused");
}

TEST_F(Contact, PausesForFiveSeconds) {
  ASSERT_TRUE(call("Pause"));
  EXPECT_EQ(property("Correction"), "paused");
  desktop_.base().wait(6);
  EXPECT_EQ(property("Correction"), "on");
}

TEST_F(Contact, QuitEndsTheLoop) {
  ASSERT_TRUE(call("Quit"));
  EXPECT_TRUE(
      desktop_.runLoop().until([&] { return desktop_.application().terminationRequested; }));
}

TEST_F(Contact, TellsLayoutsAndObstacles) {
  EXPECT_EQ(property("Version"), TESSAROK_VERSION);
  EXPECT_EQ(property("Layout"), "com.apple.keylayout.US");
  EXPECT_EQ(property("Layouts", "as"), "com.apple.keylayout.US");
  EXPECT_EQ(property("Obstacles", "as"), "there is nothing to see");
}

TEST_F(Contact, WithoutAPairOfLayoutsItWaits) {
  desktop_.base().enableInputSources({"com.apple.keylayout.US"});
  EXPECT_EQ(property("Correction"), "waiting");
  EXPECT_TRUE(isEnabled());
  ASSERT_TRUE(call("Off"));
  EXPECT_EQ(property("Correction"), "waiting");
  EXPECT_FALSE(isEnabled());
}

TEST_F(Contact, ANewVersionIsToldOnce) {
  ASSERT_FALSE(notifications_.next().empty());
  letPass(100);
  EXPECT_EQ(notifications_.count(), 1);
  writeFile(folder_.path() / "new", "the version that comes");
  std::filesystem::rename(folder_.path() / "new", program_);
  letPass(100);
  EXPECT_EQ(notifications_.next(),
            "Tessarok|A new version is installed. It is used from the next start on.");
  letPass(200);
  EXPECT_EQ(property("Desktop"), "virtual");
  EXPECT_EQ(notifications_.count(), 2);
}

TEST_F(Contact, ARemovedProgramIsNoNewVersion) {
  ASSERT_FALSE(notifications_.next().empty());
  std::filesystem::remove(program_);
  letPass(100);
  EXPECT_EQ(property("Desktop"), "virtual");
  EXPECT_EQ(notifications_.count(), 1);
}

}  // namespace
}  // namespace tessarok::testing
