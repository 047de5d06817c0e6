#include <gtest/gtest.h>
#include <string_view>

#include "desktops/terminal/CommandLine.h"

namespace tessarok::terminal {
namespace {

using Part = platform::TextContext::Part;

Part partOf(std::u32string_view line) {
  return endOfCommandLine(line, true).part;
}

TEST(CommandLine, ACommandBeginsALine) {
  EXPECT_EQ(partOf(U"jq"), Part::commandName);
  EXPECT_EQ(partOf(U"  jq"), Part::commandName);
  EXPECT_EQ(partOf(U"jq "), Part::commandArgument);
  EXPECT_EQ(partOf(U"jq .a"), Part::commandArgument);
}

TEST(CommandLine, ACommandFollowsWhatJoinsCommands) {
  for (const auto* line : {U"cat x | jq", U"make && jq", U"a; jq", U"x & jq", U"$(jq", U"`jq",
                           U"(jq", U"a || jq", U"a|jq"}) {
    EXPECT_EQ(partOf(line), Part::commandName);
  }
}

TEST(CommandLine, ACommandFollowsTheProgramsThatStartIt) {
  for (const auto* line : {U"sudo jq", U"sudo -E jq", U"LANG=C jq", U"env A=b jq", U"xargs -r jq",
                           U"if jq", U"while ! jq", U"time nice jq"}) {
    EXPECT_EQ(partOf(line), Part::commandName);
  }
}

TEST(CommandLine, InstallersTakeNames) {
  EXPECT_EQ(partOf(U"sudo apt install jq"), Part::commandName);
  EXPECT_EQ(partOf(U"man jq"), Part::commandName);
  EXPECT_EQ(partOf(U"apt install jq | echo x"), Part::commandArgument);
}

TEST(CommandLine, QuotesAndCommentsHoldText) {
  EXPECT_EQ(partOf(U"git commit -m \"yt"), Part::text);
  EXPECT_EQ(partOf(U"awk '{ yt"), Part::text);
  EXPECT_EQ(partOf(U"echo \"a\\\" yt"), Part::text);
  EXPECT_EQ(partOf(U"echo \"a\" yt"), Part::commandArgument);
  EXPECT_EQ(partOf(U"# yt"), Part::text);
  EXPECT_EQ(partOf(U"echo a#yt"), Part::commandArgument);
  EXPECT_EQ(partOf(U"echo \\\"yt"), Part::commandArgument);
  EXPECT_EQ(endOfCommandLine(U"echo \"it's", true).quote, U'"');
  EXPECT_EQ(endOfCommandLine(U"echo 'a'", true).quote, U'\0');
}

TEST(CommandLine, OptionsFollowADash) {
  EXPECT_EQ(partOf(U"rsync -rtv"), Part::commandOption);
  EXPECT_EQ(partOf(U"ls --ds"), Part::commandOption);
  EXPECT_EQ(partOf(U"echo a-ds"), Part::commandArgument);
}

TEST(CommandLine, RedirectionsTakeFiles) {
  EXPECT_EQ(partOf(U"> jq"), Part::commandArgument);
  EXPECT_EQ(partOf(U"sort <jq"), Part::commandArgument);
}

TEST(CommandLine, WithoutItsBeginningALineHoldsArguments) {
  EXPECT_EQ(endOfCommandLine(U"jq", false).part, Part::commandArgument);
  EXPECT_EQ(endOfCommandLine(U"x | jq", false).part, Part::commandName);
}

}  // namespace
}  // namespace tessarok::terminal
