// How the corrector sees whether the extension of GNOME's shell is on: a bus of the test's own, on
// which the test plays the shell.

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "desktops/ibus/ShellExtension.h"
#include "desktops/virtual/VirtualRunLoop.h"
#include "tests/desktops/freedesktop/FakeService.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/Pump.h"

namespace tessarok::testing {
namespace {

using ibus::ShellExtension;
using State = ShellExtension::State;

constexpr const char* kShell = "org.gnome.Shell";
constexpr const char* kExtension = "app.tessarok.InputSources";

class Shell : public ::testing::Test {
 protected:
  /// Whether it comes to that.
  bool becomes(State state) {
    return pump_.until([&] { return extension_->state() == state; });
  }
  std::unique_ptr<FakeService> program(const char* name) {
    auto service = std::make_unique<FakeService>(pump_, bus_.address());
    EXPECT_TRUE(service->own(name));
    return service;
  }
  void SetUp() override {
    std::string reason;
    session_ = freedesktop::Bus::openAddress(pump_, bus_.address(), reason);
    ASSERT_NE(session_, nullptr) << reason;
  }
  void begin() { extension_ = std::make_unique<ShellExtension>(session_.get()); }

  virtualdesktop::VirtualRunLoop loop_;
  Pump pump_{loop_};
  PrivateBus bus_;
  std::unique_ptr<freedesktop::Bus> session_;
  std::unique_ptr<ShellExtension> extension_;
};

TEST_F(Shell, IsNotThereOnOtherDesktops) {
  begin();
  EXPECT_EQ(extension_->state(), State::unknown);
  EXPECT_TRUE(becomes(State::noShell));
}

TEST_F(Shell, HasTheExtensionFromTheStart) {
  const auto shell = program(kShell);
  const auto extension = program(kExtension);
  begin();
  EXPECT_TRUE(becomes(State::on));
}

TEST_F(Shell, IsSeenToSwitchItOffAndOn) {
  const auto shell = program(kShell);
  auto extension = program(kExtension);
  begin();
  ASSERT_TRUE(becomes(State::on));
  int changes = 0;
  extension_->onChange = [&changes] { ++changes; };
  extension->end();
  EXPECT_TRUE(becomes(State::off));
  extension = program(kExtension);
  EXPECT_TRUE(becomes(State::on));
  EXPECT_EQ(changes, 2);
}

TEST_F(Shell, LacksItAndEnds) {
  auto shell = program(kShell);
  begin();
  EXPECT_TRUE(becomes(State::off));
  shell->end();
  EXPECT_TRUE(becomes(State::noShell));
}

TEST(ShellWithoutBus, IsNotThere) {
  ShellExtension extension(nullptr);
  EXPECT_EQ(extension.state(), State::noShell);
  EXPECT_EQ(extension.call("Sync"), nullptr);
}

}  // namespace
}  // namespace tessarok::testing
