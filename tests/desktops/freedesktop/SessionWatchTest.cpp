// Sleep, sessions and screen savers, told by a login manager that the test plays.

#include <gtest/gtest.h>

#include "desktops/freedesktop/SessionWatch.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/FakeService.h"
#include "tests/desktops/freedesktop/PrivateBus.h"

namespace tessarok::testing {
namespace {

constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";
constexpr const char* kSession = "org.freedesktop.login1.Session";
constexpr const char* kSessionPath = "/org/freedesktop/login1/session/_32";

constexpr auto kWillSleep = platform::Notification::willSleep;
constexpr auto kDidWake = platform::Notification::didWake;
constexpr auto kScreensDidSleep = platform::Notification::screensDidSleep;
constexpr auto kResigned = platform::Notification::sessionResignedActive;
constexpr auto kBecame = platform::Notification::sessionBecameActive;

class SessionWatchTest : public ::testing::Test {
 protected:
  using Heard = std::vector<platform::Notification>;

  void SetUp() override {
    ::unsetenv("XDG_SESSION_ID");
    for (const auto notification : {kWillSleep, kDidWake, kScreensDidSleep, kResigned, kBecame}) {
      observations_.push_back(
          centre_.observe(notification, [this, notification] { heard_.push_back(notification); }));
    }
    logind_.offer(kManagerPath, kManager, kTable, this);
    ASSERT_TRUE(logind_.own("org.freedesktop.login1"));
  }
  [[nodiscard]] freedesktop::SessionWatch::Surroundings surroundings() {
    return {desktop_.environment(), centre_, desktop_.systemLog()};
  }
  /// Starts to watch, and waits until the subscriptions stand.
  void watch() {
    watch_ = std::make_unique<freedesktop::SessionWatch>(desktop_.session(), desktop_.session(),
                                                         surroundings());
    ASSERT_TRUE(desktop_.runLoop().until([this] { return !askedFor_.empty(); }));
    settle();
  }
  /// Waits until what both sides have sent so far has arrived.
  void settle() {
    for (auto* bus : {&logind_.bus(), desktop_.session(), &logind_.bus()}) {
      bool answered = false;
      const auto slot =
          bus->call(bus->methodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId"),
                    [&answered](sd_bus_message&) { answered = true; });
      ASSERT_TRUE(desktop_.runLoop().until([&answered] { return answered; }));
    }
  }
  void sleep(bool starts) {
    auto signal = logind_.signal(kManagerPath, kManager, "PrepareForSleep");
    sd_bus_message_append(signal.get(), "b", starts ? 1 : 0);
    logind_.send(std::move(signal));
  }
  void changeProperty(const char* property, bool value) {
    auto signal =
        logind_.signal(kSessionPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    sd_bus_message_append(signal.get(), "sa{sv}as", kSession, 2, "IdleSinceHint", "t",
                          std::uint64_t{1}, property, "b", value ? 1 : 0, 0);
    logind_.send(std::move(signal));
  }
  void lock(const char* member) { logind_.send(logind_.signal(kSessionPath, kSession, member)); }
  Heard heard() {
    settle();
    return std::exchange(heard_, {});
  }

  static int getSession(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    const char* identifier = nullptr;
    if (const int read = sd_bus_message_read(call, "s", &identifier); read < 0) return read;
    auto& self = *static_cast<SessionWatchTest*>(userData);
    self.askedFor_ = identifier;
    if (self.refusal_.name != nullptr) return sd_bus_reply_method_error(call, &self.refusal_);
    return sd_bus_reply_method_return(call, "o", kSessionPath);
  }
  static const sd_bus_vtable kTable[];

  PrivateBus bus_;
  BusDesktop desktop_{bus_.address()};
  FakeService logind_{desktop_.runLoop(), bus_.address()};
  posix::NotificationCentre centre_;
  std::vector<std::unique_ptr<platform::Observation>> observations_;
  std::string askedFor_;
  /// The answer to whoever asks for a session; none without a name.
  sd_bus_error refusal_{};
  Heard heard_;
  std::unique_ptr<freedesktop::SessionWatch> watch_;
};

const sd_bus_vtable SessionWatchTest::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetSession", "s", "o", getSession, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

TEST_F(SessionWatchTest, TellsOfSleepAndWaking) {
  watch();
  sleep(true);
  EXPECT_EQ(heard(), Heard{kWillSleep});
  sleep(false);
  EXPECT_EQ(heard(), Heard{kDidWake});
}

TEST_F(SessionWatchTest, TellsWhenAnotherSessionComesToTheFront) {
  watch();
  changeProperty("Active", false);
  EXPECT_EQ(heard(), Heard{kResigned});
  changeProperty("Active", true);
  EXPECT_EQ(heard(), Heard{kBecame});
}

TEST_F(SessionWatchTest, TellsOfALockOnce) {
  watch();
  lock("Lock");
  changeProperty("LockedHint", true);
  EXPECT_EQ(heard(), Heard{kResigned});
  changeProperty("Active", true);
  EXPECT_EQ(heard(), Heard{});
  lock("Unlock");
  changeProperty("LockedHint", false);
  EXPECT_EQ(heard(), Heard{kBecame});
}

TEST_F(SessionWatchTest, TellsWhenTheScreenSaverStarts) {
  watch();
  for (const auto* interface : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) {
    for (const int active : {1, 0}) {
      auto signal = logind_.signal("/org/freedesktop/ScreenSaver", interface, "ActiveChanged");
      sd_bus_message_append(signal.get(), "b", active);
      logind_.send(std::move(signal));
    }
  }
  EXPECT_EQ(heard(), (Heard{kScreensDidSleep, kScreensDidSleep}));
}

TEST_F(SessionWatchTest, WatchesTheSessionInFrontWhenItBelongsToNone) {
  watch();
  EXPECT_EQ(askedFor_, "auto");
}

TEST_F(SessionWatchTest, WatchesTheSessionItBelongsTo) {
  ::setenv("XDG_SESSION_ID", "2", 1);
  watch();
  EXPECT_EQ(askedFor_, "2");
}

TEST_F(SessionWatchTest, SaysWhenTheSessionIsUnknown) {
  for (const auto* reason : {static_cast<const char*>(nullptr), "there is no such session"}) {
    refusal_ = {"org.example.Unknown", reason, 0};
    watch();
    // An error that explains nothing has a name at least.
    EXPECT_EQ(desktop_.systemLog().take(),
              std::vector<std::string>{"Tessarok: the login manager does not tell the session (" +
                                       std::string(reason == nullptr ? refusal_.name : reason) +
                                       "); a locked session is not noticed"});
    askedFor_.clear();
  }
}

TEST_F(SessionWatchTest, HearsNothingWithoutBuses) {
  const freedesktop::SessionWatch deaf(nullptr, nullptr, surroundings());
  sleep(true);
  EXPECT_EQ(heard(), Heard{});
  EXPECT_EQ(desktop_.systemLog().take(),
            std::vector<std::string>{
                "Tessarok: there is no system bus; sleep and locked sessions are not noticed"});
}

}  // namespace
}  // namespace tessarok::testing
