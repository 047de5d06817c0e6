// Two copies of the program started at once in the same home.

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/ChildProcess.h"

namespace tessarok {
namespace {

using nlohmann::json;
using testing::ChildProcess;

constexpr int kRaces = 100;
constexpr const char* kQuestion = "{\"print\": [\"tap\", \"syslog\"]}\n";

TEST(LockRace, ExactlyOneOfTwoCopiesGetsTheLock) {
  const virtualdesktop::TemporaryDirectory home;
  const std::vector<std::string> arguments = {"--resources", TESSAROK_TEST_DATA, "replay", "--home",
                                              home.path()};
  const json refusal = {"Tessarok: another instance is already running"};
  int firstWins = 0;
  for (int race = 0; race < kRaces; ++race) {
    ChildProcess first(arguments);
    ChildProcess second(arguments);
    // They launch with their first line, and stay alive until no more follows.
    ASSERT_TRUE(first.send(kQuestion));
    ASSERT_TRUE(second.send(kQuestion));
    const auto a = json::parse(first.receive().value());
    const auto b = json::parse(second.receive().value());
    const bool firstWon = a["tap"]["tapRunning"];
    const auto& winner = firstWon ? a : b;
    const auto& loser = firstWon ? b : a;
    ASSERT_EQ(winner["tap"]["tapRunning"], true) << race;
    ASSERT_EQ(winner["syslog"], json::array()) << race;
    ASSERT_EQ(loser["tap"]["tapRunning"], false) << race;
    ASSERT_EQ(loser["tap"]["exists"], false) << race;
    ASSERT_EQ(loser["syslog"], refusal) << race;
    // The loser has ended its application: keys are no more for it.
    auto& ended = firstWon ? second : first;
    ended.send("{\"keys\": \"a\"}\n");
    ASSERT_EQ(ended.finish(), 2);
    ASSERT_EQ((firstWon ? first : second).finish(), 0);
    firstWins += firstWon ? 1 : 0;
  }
  RecordProperty("first_wins", firstWins);
}

}  // namespace
}  // namespace tessarok
