// Password fields, told by an accessibility bus that the test plays.

#include <gtest/gtest.h>

#include "desktops/freedesktop/AtSpiSecureInput.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/FakeService.h"
#include "tests/desktops/freedesktop/PrivateBus.h"

namespace tessarok::testing {
namespace {

constexpr std::uint32_t kPasswordText = 40;
constexpr std::uint32_t kText = 61;
constexpr const char* kRoot = "/org/a11y/atspi/accessible/root";
constexpr const char* kPasswordPath = "/org/a11y/atspi/accessible/7";
constexpr const char* kTextPath = "/org/a11y/atspi/accessible/8";

/// The launcher of the accessibility bus, its registry, and a program with two fields.
class SecureInput : public ::testing::Test {
 protected:
  void start() {
    launcher_.offer("/org/a11y/bus", "org.a11y.Bus", kLauncherTable, this);
    ASSERT_TRUE(launcher_.own("org.a11y.Bus"));
    registry_.offer("/org/a11y/atspi/registry", "org.a11y.atspi.Registry", kRegistryTable, this);
    registry_.offer(kRoot, "org.a11y.atspi.Socket", kSocketTable, this);
    ASSERT_TRUE(registry_.own("org.a11y.atspi.Registry"));
    program_.offer(kPasswordPath, "org.a11y.atspi.Accessible", kAccessibleTable, &passwordRole_);
    program_.offer(kTextPath, "org.a11y.atspi.Accessible", kAccessibleTable, &textRole_);
    program_.offer(kRoot, "org.a11y.atspi.Collection", kCollectionTable, this);
    secureInput_ = std::make_unique<freedesktop::AtSpiSecureInput>(
        desktop_.session(), desktop_.runLoop(), desktop_.systemLog());
    ASSERT_TRUE(until([this] { return secureInput_->isListening(); }));
  }
  void focus(const char* path, bool gained) {
    auto signal = program_.signal(path, "org.a11y.atspi.Event.Object", "StateChanged");
    sd_bus_message_append(signal.get(), "siiv(so)", "focused", gained ? 1 : 0, 0, "i", 0, "", "/");
    program_.send(std::move(signal));
  }
  /// The program is one that has just started.
  void comes(FakeService& program) {
    program.send(program.bus().methodCall("org.a11y.atspi.Registry", kRoot, "org.a11y.atspi.Socket",
                                          "Embed"));
  }
  bool isAsked(int times) {
    return until([this, times] { return questions_ == times; });
  }
  bool until(const std::function<bool()>& done) { return desktop_.runLoop().until(done); }
  bool becomesSecure() {
    return until([this] { return secureInput_->isEnabled(); });
  }
  bool becomesOpen() {
    return until([this] { return !secureInput_->isEnabled(); });
  }

  static int getAddress(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    auto& self = *static_cast<SecureInput*>(userData);
    return sd_bus_reply_method_return(call, "s", self.accessibilityBus_.address().c_str());
  }
  static int registerEvent(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    const char* event = nullptr;
    if (const int read = sd_bus_message_read(call, "s", &event); read < 0) return read;
    static_cast<SecureInput*>(userData)->registeredEvent_ = event;
    return sd_bus_reply_method_return(call, "");
  }
  static int embed(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    auto& registry = static_cast<SecureInput*>(userData)->registry_;
    auto signal = registry.signal(kRoot, "org.a11y.atspi.Event.Object", "ChildrenChanged");
    sd_bus_message_append(signal.get(), "siiva{sv}", "add", 0, 0, "(so)",
                          sd_bus_message_get_sender(call), kRoot, 0);
    registry.send(std::move(signal));
    return 1;
  }
  static int getRole(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    return sd_bus_reply_method_return(call, "u", *static_cast<std::uint32_t*>(userData));
  }
  /// Answers what has the focus; the program has said nothing of it by itself.
  static int getMatches(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    auto& self = *static_cast<SecureInput*>(userData);
    ++self.questions_;
    if (self.focused_.empty()) return sd_bus_reply_method_return(call, "a(so)", 0);
    return sd_bus_reply_method_return(call, "a(so)", 1, sd_bus_message_get_destination(call),
                                      self.focused_.c_str());
  }
  static const sd_bus_vtable kLauncherTable[];
  static const sd_bus_vtable kRegistryTable[];
  static const sd_bus_vtable kSocketTable[];
  static const sd_bus_vtable kAccessibleTable[];
  static const sd_bus_vtable kCollectionTable[];

  PrivateBus sessionBus_;
  PrivateBus accessibilityBus_;
  BusDesktop desktop_{sessionBus_.address()};
  FakeService launcher_{desktop_.runLoop(), sessionBus_.address()};
  FakeService registry_{desktop_.runLoop(), accessibilityBus_.address()};
  FakeService program_{desktop_.runLoop(), accessibilityBus_.address()};
  std::uint32_t passwordRole_ = kPasswordText;
  std::uint32_t textRole_ = kText;
  std::string registeredEvent_;
  std::string focused_;
  int questions_ = 0;
  std::unique_ptr<freedesktop::AtSpiSecureInput> secureInput_;
};

const sd_bus_vtable SecureInput::kLauncherTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetAddress", "", "s", getAddress, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable SecureInput::kRegistryTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("RegisterEvent", "s", "", registerEvent, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable SecureInput::kSocketTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Embed", "", "", embed, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable SecureInput::kAccessibleTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetRole", "", "u", getRole, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

const sd_bus_vtable SecureInput::kCollectionTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetMatches", "(aiia{ss}iaiiasib)uib", "a(so)", getMatches,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

TEST_F(SecureInput, IsOnInAPasswordField) {
  start();
  EXPECT_EQ(registeredEvent_, "object:state-changed:focused");
  EXPECT_FALSE(secureInput_->isEnabled());
  focus(kPasswordPath, true);
  EXPECT_TRUE(becomesSecure());
}

TEST_F(SecureInput, StaysOnOnceTheFieldHasAnswered) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  ASSERT_TRUE(until([this] { return secureInput_->isSettled(); }));
  EXPECT_TRUE(secureInput_->isEnabled());
}

TEST_F(SecureInput, IsOffAgainInAnotherField) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  focus(kPasswordPath, false);
  focus(kTextPath, true);
  EXPECT_TRUE(becomesOpen());
}

TEST_F(SecureInput, IsOffWhenTheNextFieldTellsBeforeTheLast) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  focus(kTextPath, true);
  focus(kPasswordPath, false);
  EXPECT_TRUE(becomesOpen());
}

TEST_F(SecureInput, IsOffWhenTheWindowIsLeft) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  focus(kPasswordPath, false);
  EXPECT_TRUE(becomesOpen());
}

TEST_F(SecureInput, IsOffWhenTheProgramEnds) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  program_.end();
  EXPECT_TRUE(becomesOpen());
}

TEST_F(SecureInput, IsOffWhenTheAccessibilityBusEnds) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  accessibilityBus_.stop();
  EXPECT_TRUE(until([this] { return !secureInput_->isListening(); }));
  EXPECT_FALSE(secureInput_->isEnabled());
}

TEST_F(SecureInput, IsOffForAFieldThatDoesNotAnswer) {
  start();
  focus("/nothing/here", true);
  ASSERT_TRUE(becomesSecure());
  EXPECT_TRUE(becomesOpen());
}

TEST_F(SecureInput, IsOnInAProgramThatStartsInAPasswordField) {
  start();
  focused_ = kPasswordPath;
  comes(program_);
  EXPECT_TRUE(becomesSecure());
  ASSERT_TRUE(until([this] { return secureInput_->isSettled(); }));
  EXPECT_TRUE(secureInput_->isEnabled());
}

TEST_F(SecureInput, IsOnInAFieldThatGetsTheFocusBeforeTheProgramTellsOfIt) {
  start();
  comes(program_);
  ASSERT_TRUE(isAsked(1));
  EXPECT_FALSE(secureInput_->isEnabled());
  focused_ = kPasswordPath;
  desktop_.base().wait(0.5);
  EXPECT_TRUE(becomesSecure());
}

TEST_F(SecureInput, IsOffInAProgramThatHasLeftThePasswordFieldBeforeItTells) {
  start();
  focused_ = kPasswordPath;
  comes(program_);
  ASSERT_TRUE(becomesSecure());
  focused_.clear();
  desktop_.base().wait(0.5);
  EXPECT_TRUE(becomesOpen());
}

TEST_F(SecureInput, StaysAsItIsForAProgramThatCannotLook) {
  start();
  focus(kPasswordPath, true);
  ASSERT_TRUE(becomesSecure());
  ASSERT_TRUE(until([this] { return secureInput_->isSettled(); }));
  comes(registry_);
  // It has refused by the time that a later question is answered.
  comes(program_);
  focused_ = kPasswordPath;
  ASSERT_TRUE(isAsked(1));
  EXPECT_TRUE(secureInput_->isEnabled());
}

TEST_F(SecureInput, IsNeverOnWithoutBuses) {
  freedesktop::AtSpiSecureInput alone(nullptr, desktop_.runLoop(), desktop_.systemLog());
  EXPECT_FALSE(alone.isEnabled());
  freedesktop::AtSpiSecureInput withoutLauncher(desktop_.session(), desktop_.runLoop(),
                                                desktop_.systemLog());
  EXPECT_FALSE(withoutLauncher.isListening());
  EXPECT_FALSE(withoutLauncher.isEnabled());
}

}  // namespace
}  // namespace tessarok::testing
