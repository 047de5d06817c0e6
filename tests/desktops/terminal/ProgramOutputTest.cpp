#include <gtest/gtest.h>
#include <string>

#include "desktops/terminal/ProgramOutput.h"

namespace tessarok::terminal {
namespace {

bool showsAlternateScreen(std::string_view bytes) {
  // As a whole, and a byte at a time.
  ProgramOutput whole;
  whole.feed(bytes);
  ProgramOutput split;
  for (std::size_t i = 0; i < bytes.size(); ++i)
    split.feed(bytes.substr(i, 1));
  EXPECT_EQ(whole.isAlternateScreen(), split.isAlternateScreen());
  return whole.isAlternateScreen();
}

TEST(ProgramOutput, KnowsTheAlternateScreen) {
  EXPECT_TRUE(showsAlternateScreen("text\x1b[?1049htext"));
  EXPECT_TRUE(showsAlternateScreen("\x1b[?1049;25h"));
  EXPECT_TRUE(showsAlternateScreen("\x1b[?25;47h"));
  EXPECT_FALSE(showsAlternateScreen("\x1b[?1049h\x1b[?1049l"));
  EXPECT_FALSE(
      showsAlternateScreen("\x1b[?1049h\x1b"
                           "c"));
  EXPECT_FALSE(showsAlternateScreen("\x1b[1049h"));
  EXPECT_FALSE(showsAlternateScreen("\x1b[?2004h"));
  EXPECT_FALSE(showsAlternateScreen("\x1b]0;title [?1049h\a"));
  EXPECT_TRUE(showsAlternateScreen("\x1b]0;title\x1b\\\x1b(B\x1b[?1049h"));
}

TEST(ProgramOutput, KnowsPromptsOfLineEditors) {
  ProgramOutput output;
  EXPECT_FALSE(output.takePrompt());
  output.feed("\x1b[?2004h$ ");
  EXPECT_TRUE(output.wantsBrackets());
  EXPECT_TRUE(output.takePrompt());
  EXPECT_FALSE(output.takePrompt());
  output.feed("\x1b[?2004l");
  EXPECT_FALSE(output.wantsBrackets());
  EXPECT_FALSE(output.takePrompt());
  output.feed("\x1b]133;A\a");
  EXPECT_TRUE(output.takePrompt());
  output.feed("\x1b]133;C\x1b\\\x1b]0;133;A\a");
  EXPECT_FALSE(output.takePrompt());
}

TEST(ProgramOutput, KnowsProgramsThatMoveTheCursorAbout) {
  ProgramOutput output;
  // Clearing the screen, and a clock in a corner, are what line editors do as well.
  output.feed(
      "\x1b[H\x1b[2J\x1b[3C\x1b"
      "7\x1b[1;70H12:00\x1b"
      "8");
  EXPECT_FALSE(output.takeAddressing());
  output.feed("\x1b[5;1H");
  EXPECT_TRUE(output.takeAddressing());
  EXPECT_FALSE(output.takeAddressing());
}

}  // namespace
}  // namespace tessarok::terminal
