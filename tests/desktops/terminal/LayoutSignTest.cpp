#include <cstdlib>
#include <gtest/gtest.h>
#include <map>

#include "desktops/terminal/LayoutSign.h"

namespace tessarok::terminal {
namespace {

using State = LayoutSign::State;

constexpr std::string_view kRed = "\x1b]12;#e05030\a";
constexpr std::string_view kGrey = "\x1b]12;#808080\a";
constexpr std::string_view kOwn = "\x1b]112\a";

class LayoutSignTest : public ::testing::Test {
 protected:
  LayoutSignTest() {
    ::setenv("TERM", "xterm-256color", 1);
    ::unsetenv("NO_COLOR");
  }
  LayoutSign sign() {
    return LayoutSign([this](std::string_view key) -> std::optional<std::string> {
      const auto found = settings_.find(key);
      if (found == settings_.end()) return std::nullopt;
      return found->second;
    });
  }

  std::map<std::string, std::string, std::less<>> settings_;
};

TEST_F(LayoutSignTest, TheCursorHasTheColourOfTheLayout) {
  auto sign = this->sign();
  EXPECT_EQ(sign.show(State::english), "");
  EXPECT_EQ(sign.show(State::russian), kRed);
  // Only changes are sent.
  EXPECT_EQ(sign.show(State::russian), "");
  EXPECT_EQ(sign.show(State::off), kGrey);
  EXPECT_EQ(sign.show(State::english), kOwn);
}

TEST_F(LayoutSignTest, TheTitleIsKeptAndPutBackOnce) {
  settings_ = {{"layoutCursor", "off"}, {"layoutTitle", "on"}};
  auto sign = this->sign();
  EXPECT_EQ(sign.show(State::russian), "\x1b[22;2t\x1b]2;РУС\a");
  EXPECT_EQ(sign.show(State::off), "\x1b]2;⏸\a");
  EXPECT_EQ(sign.show(State::english), "\x1b[23;2t");
}

TEST_F(LayoutSignTest, BothCanBeOff) {
  settings_ = {{"layoutCursor", "off"}};
  auto sign = this->sign();
  EXPECT_EQ(sign.show(State::russian), "");
  EXPECT_EQ(sign.show(State::english), "");
}

TEST_F(LayoutSignTest, ATerminalThatIsNotKnownIsSentNothing) {
  for (const char* name : {"dumb", "linux", "vt100", "screen", ""}) {
    ::setenv("TERM", name, 1);
    EXPECT_EQ(sign().show(State::russian), "") << name;
  }
  ::unsetenv("TERM");
  EXPECT_EQ(sign().show(State::russian), "");
  for (const char* name : {"xterm", "foot", "alacritty", "tmux-256color"}) {
    ::setenv("TERM", name, 1);
    EXPECT_EQ(sign().show(State::russian), kRed) << name;
  }
}

TEST_F(LayoutSignTest, WhoWantsNoColoursGetsNone) {
  ::setenv("NO_COLOR", "1", 1);
  EXPECT_EQ(sign().show(State::russian), "");
  // An empty one says nothing.
  ::setenv("NO_COLOR", "", 1);
  EXPECT_EQ(sign().show(State::russian), kRed);
}

}  // namespace
}  // namespace tessarok::terminal
