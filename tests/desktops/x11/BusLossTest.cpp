// Buses that end, hang, or never answer, while a person types.

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>

#include "tests/desktops/freedesktop/FakeSession.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/SilentBus.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/FairClock.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/ProcessState.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {
namespace {

/// Seconds in which a program that turns round without end is found out: half of them would be
/// spent on a processor even if that were shared.
constexpr double kWatched = 0.5;
constexpr double kMostProcessorTime = 0.1;

class BusLoss : public ::testing::Test {
 protected:
  void start(const std::string& session, const std::string& system) {
    Tessarok::Setup setup;
    setup.environment = {{"DBUS_SESSION_BUS_ADDRESS", session},
                         {"DBUS_SYSTEM_BUS_ADDRESS", system}};
    program_ = std::make_unique<Tessarok>(server_, setup);
    ASSERT_TRUE(program_->says("correcting in every application")) << program_->errors();
  }
  /// The program finds everything on the one bus of the session, which is busy from then on.
  void startIn(FakeSession& session) {
    start(session.bus().address(), session.bus().address());
    ASSERT_TRUE(waitUntil([&] {
      session.serve();
      return session.isFound();
    }));
    session.beBusy();
  }
  void expectCorrecting() {
    server_.type("ghbdtn hello ");
    expected_ += "привет hello ";
    EXPECT_TRUE(window_.shows(expected_)) << window_.text();
    server_.lockGroup(0);
  }
  void expectRest() {
    const auto before = processorTimeOf(program_->worker());
    ASSERT_GT(before, 0);
    std::this_thread::sleep_for(std::chrono::duration<double>(kWatched));
    EXPECT_LT(processorTimeOf(program_->worker()) - before, kMostProcessorTime);
  }
  void expectSaidOnce(const std::string& text) {
    EXPECT_TRUE(program_->says(text)) << program_->errors();
    EXPECT_EQ(program_->errors().find(text), program_->errors().rfind(text)) << program_->errors();
  }
  void expectGoodEnd() {
    program_->send(SIGTERM);
    EXPECT_EQ(program_->exitStatus(), 0) << program_->errors();
  }

  XServer server_;
  GtkEntry window_{server_};
  std::unique_ptr<Tessarok> program_;

 private:
  std::string expected_;
};

TEST_F(BusLoss, TheEndOfTheSystemBusIsSaidOnce) {
  PrivateBus session;
  PrivateBus system;
  start(session.address(), system.address());
  expectCorrecting();
  system.stop();
  expectSaidOnce("the system bus is lost");
  expectRest();
  expectCorrecting();
  EXPECT_EQ(program_->errors().find("session bus"), std::string::npos) << program_->errors();
  expectGoodEnd();
}

TEST_F(BusLoss, TheEndOfAllBusesIsSaidOnceOfEach) {
  FakeSession session;
  startIn(session);
  server_.type("ghb");
  session.bus().stop();
  server_.type("dtn hello ");
  ASSERT_TRUE(window_.shows("привет hello ")) << window_.text();
  expectSaidOnce("the session bus is lost");
  expectSaidOnce("the system bus is lost");
  expectSaidOnce("the accessibility bus is lost");
  expectRest();
  expectGoodEnd();
}

TEST_F(BusLoss, BusesThatNeverAnswerKeepNobodyFromTyping) {
  const SilentBus bus;
  const FairClock clock;
  start(bus.address(), bus.address());
  const auto passed = clock.passed();
  EXPECT_LT(passed, freedesktop::Bus::kConnectPatience);
  RecordProperty("milliseconds", static_cast<int>(passed * 1000));
  expectCorrecting();
  expectRest();
  expectCorrecting();
  expectGoodEnd();
}

TEST_F(BusLoss, BusesThatHangKeepNobodyFromTyping) {
  FakeSession session;
  startIn(session);
  session.bus().hang();
  expectCorrecting();
  expectRest();
  expectCorrecting();
  expectGoodEnd();
}

}  // namespace
}  // namespace tessarok::testing
