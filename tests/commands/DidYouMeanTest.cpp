#include <gtest/gtest.h>

#include "commands/DidYouMean.h"

namespace tessarok::commands {
namespace {

const std::vector<std::string> kNames = {"type",   "explain", "learned",   "replay", "terminal",
                                         "on",     "off",     "layout",    "status", "x11",
                                         "forget", "report",  "check-data"};

TEST(DidYouMean, CountsTheMistakes) {
  EXPECT_EQ(distanceBetween("", ""), 0u);
  EXPECT_EQ(distanceBetween("", "abc"), 3u);
  EXPECT_EQ(distanceBetween("abc", ""), 3u);
  EXPECT_EQ(distanceBetween("kitten", "sitting"), 3u);
  EXPECT_EQ(distanceBetween("saturday", "sunday"), 3u);
  EXPECT_EQ(distanceBetween("status", "sttaus"), 1u);
  // No Character is moved twice.
  EXPECT_EQ(distanceBetween("ca", "abc"), 3u);
}

TEST(DidYouMean, CountsCharactersNotBytes) {
  EXPECT_EQ(distanceBetween("привет", "привёт"), 1u);
  EXPECT_EQ(distanceBetween("й", "и\u0306"), 1u);
  EXPECT_EQ(distanceBetween("", "и\u0306"), 1u);
}

TEST(DidYouMean, KnowsWhatWasMeant) {
  for (const auto& [wrong, meant] :
       std::vector<std::pair<std::string, std::string>>{{"statsu", "status"},
                                                        {"stats", "status"},
                                                        {"termnal", "terminal"},
                                                        {"termianl", "terminal"},
                                                        {"explian", "explain"},
                                                        {"learn", "learned"},
                                                        {"checkdata", "check-data"},
                                                        {"check_data", "check-data"},
                                                        {"reply", "replay"},
                                                        {"x1", "x11"},
                                                        {"of", "off"},
                                                        {"tpye", "type"}}) {
    EXPECT_EQ(nearestName(wrong, kNames), meant) << wrong;
  }
}

TEST(DidYouMean, KnowsWhatWasTypedInTheOtherLayout) {
  EXPECT_EQ(nearestName("ыефегы", kNames), "status");
  EXPECT_EQ(nearestName("еукьштфд", kNames), "terminal");
  EXPECT_EQ(nearestName("ыефеы", kNames), "status");
}

TEST(DidYouMean, GuessesNothingWild) {
  for (const auto* wrong : {"", "q", "zz", "frobnicate", "привет", "no-such-command", "xxxxxx"})
    EXPECT_EQ(nearestName(wrong, kNames), std::nullopt) << wrong;
  EXPECT_EQ(nearestName("status", {}), std::nullopt);
  EXPECT_EQ(nearestName(std::string(100000, 'a'), kNames), std::nullopt);
}

TEST(DidYouMean, OfEqualsTakesTheOneThatBeginsAlikeThenTheFirst) {
  EXPECT_EQ(nearestName("of", {"on", "off"}), "off");
  EXPECT_EQ(nearestName("bat", {"cat", "hat"}), "cat");
  EXPECT_EQ(nearestName("hatt", {"cat", "hat"}), "hat");
}

TEST(DidYouMean, BearsBytesThatAreNoText) {
  EXPECT_EQ(nearestName("statu\xff", kNames), "status");
  EXPECT_EQ(nearestName("\xff\xfe", kNames), std::nullopt);
}

}  // namespace
}  // namespace tessarok::commands
