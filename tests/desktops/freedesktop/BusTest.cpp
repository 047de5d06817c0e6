// The connection to a bus on the real run loop, and when the other end fails.

#include <gtest/gtest.h>
#include <poll.h>
#include <stdexcept>

#include "desktops/freedesktop/BusExceptions.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/PollLoop.h"
#include "tests/desktops/freedesktop/FakeService.h"
#include "tests/desktops/freedesktop/PrivateBus.h"

namespace tessarok::testing {
namespace {

using freedesktop::Bus;
using freedesktop::BusMessage;

BusMessage callOfDaemon(Bus& bus, const char* member) {
  return bus.methodCall("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                        member);
}

/// Ends a loop that waits for something that does not come.
constexpr double kLongestWait = 20;

class BusOnLoop : public ::testing::Test {
 protected:
  void SetUp() override {
    loop_.after(kLongestWait, [this] {
      timedOut_ = true;
      loop_.stop();
    });
  }

  PrivateBus daemon_;
  posix::MonotonicClock clock_;
  posix::PollLoop loop_{clock_};
  std::string reason_;
  bool timedOut_ = false;
};

TEST_F(BusOnLoop, GetsAnswers) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  ASSERT_TRUE(bus);
  std::string identifier;
  const auto slot = bus->call(callOfDaemon(*bus, "GetId"), [&](sd_bus_message& reply) {
    const char* text = nullptr;
    if (sd_bus_message_read(&reply, "s", &text) >= 0) identifier = text;
    loop_.stop();
  });
  loop_.run();
  EXPECT_FALSE(timedOut_);
  EXPECT_EQ(identifier.size(), 32U);
}

TEST_F(BusOnLoop, GetsErrors) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  bool isError = false;
  const auto slot = bus->call(callOfDaemon(*bus, "Nonsense"), [&](sd_bus_message& reply) {
    isError = sd_bus_message_is_method_error(&reply, nullptr) != 0;
    loop_.stop();
  });
  loop_.run();
  EXPECT_TRUE(isError);
}

TEST_F(BusOnLoop, ThrowsWhatAHandlerThrows) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  const auto slot = bus->call(callOfDaemon(*bus, "GetId"),
                              [](sd_bus_message&) { throw std::runtime_error("a failure"); });
  EXPECT_THROW(loop_.run(), std::runtime_error);
  // Once.
  const auto next =
      bus->call(callOfDaemon(*bus, "GetId"), [this](sd_bus_message&) { loop_.stop(); });
  loop_.run();
  EXPECT_FALSE(timedOut_);
}

int fail(sd_bus_message*, void*, sd_bus_error*) {
  throw std::runtime_error("a failure");
}

TEST_F(BusOnLoop, ThrowsWhatAnswersThrow) {
  static const sd_bus_vtable kTable[] = {
      SD_BUS_VTABLE_START(0),
      SD_BUS_METHOD("Fail", "", "", freedesktop::BusExceptions::call<fail>,
                    SD_BUS_VTABLE_UNPRIVILEGED),
      SD_BUS_VTABLE_END,
  };
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  const auto object = bus->addObject("/failing", "test.Failing", kTable, nullptr);
  const auto name = bus->requestName("test.Failing");
  const auto asker = Bus::openAddress(loop_, daemon_.address(), reason_);
  bool isError = false;
  const auto slot =
      asker->call(asker->methodCall("test.Failing", "/failing", "test.Failing", "Fail"),
                  [&](sd_bus_message& reply) {
                    isError = sd_bus_message_is_method_error(&reply, nullptr) != 0;
                    loop_.stop();
                  });
  EXPECT_THROW(loop_.run(), std::runtime_error);
  loop_.run();
  EXPECT_TRUE(isError);
}

/// As other programs may send them.
TEST_F(BusOnLoop, NamesThatAreNoneAreNotTheBusesFault) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  for (const auto* name : {"", ":", "no name", "tessarok"}) {
    auto message = bus->methodCall(name, "/", "org.freedesktop.DBus.Peer", "Ping");
    EXPECT_FALSE(message) << name;
    const auto slot = bus->call(std::move(message), [](sd_bus_message&) { FAIL(); });
  }
  const auto slot =
      bus->call(callOfDaemon(*bus, "GetId"), [this](sd_bus_message&) { loop_.stop(); });
  loop_.run();
  EXPECT_TRUE(bus->isOpen());
  EXPECT_FALSE(timedOut_);
}

TEST_F(BusOnLoop, GivesUpOnAProgramThatDoesNotAnswer) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  const auto mute = Bus::openAddress(loop_, daemon_.address(), reason_);
  std::string muteName;
  bool gaveUp = false;
  freedesktop::BusSlot waiting;
  const auto named = mute->call(callOfDaemon(*mute, "GetId"), [&](sd_bus_message& reply) {
    muteName = sd_bus_message_get_destination(&reply);
    // From now on nobody serves this connection.
    loop_.remove(*mute);
    auto call = bus->methodCall(muteName, "/", "org.example.Any", "Any");
    waiting = bus->call(
        std::move(call),
        [&](sd_bus_message& answer) {
          gaveUp = sd_bus_message_is_method_error(&answer, nullptr) != 0;
          loop_.stop();
        },
        50'000);
  });
  loop_.run();
  EXPECT_TRUE(gaveUp);
  EXPECT_FALSE(timedOut_);
}

TEST_F(BusOnLoop, SaysWhenTheBusHasEnded) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  bus->onClosed = [this](const std::string& reason) {
    EXPECT_FALSE(reason.empty());
    loop_.stop();
  };
  const auto slot =
      bus->call(callOfDaemon(*bus, "GetId"), [&](sd_bus_message&) { daemon_.stop(); });
  loop_.run();
  EXPECT_FALSE(timedOut_);
  EXPECT_FALSE(bus->isOpen());
  // Nothing works any more, and nothing fails loudly.
  EXPECT_EQ(bus->events(), 0);
  EXPECT_FALSE(bus->methodCall("a.b", "/", "a.b", "C"));
  EXPECT_FALSE(bus->signal("/", "a.b", "C"));
  EXPECT_FALSE(bus->match("type='signal'", [](sd_bus_message&) {}));
  EXPECT_FALSE(bus->call(nullptr, [](sd_bus_message&) {}));
  EXPECT_FALSE(bus->requestName("a.b"));
  bus->send(nullptr);
}

// Taken down by the library, which answers all calls that wait.
TEST_F(BusOnLoop, AnswersEveryCallWhenTheBusHasEnded) {
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  const auto mute = Bus::openAddress(loop_, daemon_.address(), reason_);
  bool isError = false;
  freedesktop::BusSlot waiting;
  const auto named = mute->call(callOfDaemon(*mute, "GetId"), [&](sd_bus_message& reply) {
    // From now on nobody serves this connection.
    loop_.remove(*mute);
    waiting = bus->call(
        bus->methodCall(sd_bus_message_get_destination(&reply), "/", "org.example.Any", "Any"),
        [&](sd_bus_message& answer) {
          isError = sd_bus_message_is_method_error(&answer, nullptr) != 0;
        });
    loop_.async([this] { daemon_.stop(); });
  });
  bus->onClosed = [this](const std::string&) { loop_.stop(); };
  loop_.run();
  EXPECT_FALSE(timedOut_);
  EXPECT_TRUE(isError);
}

TEST_F(BusOnLoop, LetsKeysInBetweenWhatIsSentWithoutEnd) {
  constexpr int kSignals = 1000;
  const auto bus = Bus::openAddress(loop_, daemon_.address(), reason_);
  const auto talker = Bus::openAddress(loop_, daemon_.address(), reason_);
  int heard = 0;
  const auto match = bus->match("type='signal',interface='a.b'", [&](sd_bus_message&) {
    if (++heard == kSignals) loop_.stop();
  });
  freedesktop::BusSlot sent;
  int heardInOneTurn = 0;
  const auto ready = bus->call(callOfDaemon(*bus, "GetId"), [&](sd_bus_message&) {
    loop_.remove(*bus);
    // Not in the turn of this answer, in which the first of them could still be heard.
    loop_.async([&] {
      for (int i = 0; i < kSignals; ++i)
        talker->send(talker->signal("/", "a.b", "C"));
      sent = talker->call(callOfDaemon(*talker, "GetId"), [&](sd_bus_message&) {
        EXPECT_EQ(heard, 0);
        loop_.add(*bus);
        bus->ready(POLLIN);
        heardInOneTurn = heard;
      });
    });
  });
  loop_.run();
  EXPECT_FALSE(timedOut_);
  EXPECT_GT(heardInOneTurn, 0);
  EXPECT_LT(heardInOneTurn, kSignals / 10);
}

TEST_F(BusOnLoop, SaysWhyThereIsNone) {
  EXPECT_FALSE(Bus::openAddress(loop_, "unix:path=/nonexistent/bus", reason_));
  EXPECT_EQ(reason_, "No such file or directory");
  EXPECT_FALSE(Bus::openAddress(loop_, "nonsense", reason_));
  EXPECT_FALSE(reason_.empty());
}

TEST_F(BusOnLoop, TakesTheBusesOfTheEnvironment) {
  ::setenv("DBUS_SESSION_BUS_ADDRESS", daemon_.address().c_str(), 1);
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  EXPECT_TRUE(Bus::openSession(loop_));
  EXPECT_FALSE(Bus::openSystem(loop_));
}

}  // namespace
}  // namespace tessarok::testing
