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

TEST(ProgramOutput, WaitsForTheEcho) {
  ProgramOutput output;
  EXPECT_TRUE(output.isEchoComplete());
  output.expectEcho("g");
  output.expectEcho("п");
  EXPECT_FALSE(output.isEchoComplete());
  output.feed("g");
  EXPECT_FALSE(output.isEchoComplete());
  output.feed("\xd0");
  EXPECT_FALSE(output.hasEchoed());
  output.feed("\xbf");
  EXPECT_TRUE(output.isEchoComplete());
  EXPECT_TRUE(output.hasEchoed());
}

TEST(ProgramOutput, FindsTheEchoAmongColoursAndOtherText) {
  ProgramOutput output;
  output.expectEcho("h");
  output.expectEcho("о");
  // The h in the sequence and the р, which begins like п but not like о, are none.
  output.feed("\x1b[1;31h");
  EXPECT_FALSE(output.isEchoComplete());
  output.feed("\x1b[31mh\x1b[0m р\xd0\xbf\b\xd0\xbe");
  EXPECT_TRUE(output.isEchoComplete());
}

TEST(ProgramOutput, AnErasedCharacterNeedNotAppear) {
  ProgramOutput output;
  output.expectEcho("a");
  output.expectEcho("п");
  output.feed("a");
  output.expectErased();
  EXPECT_TRUE(output.isEchoComplete());
  output.expectErased();
  EXPECT_TRUE(output.isEchoComplete());
}

TEST(ProgramOutput, ForgetsWhatItWaitsFor) {
  ProgramOutput output;
  output.expectEcho("a");
  output.forgetEcho();
  EXPECT_TRUE(output.isEchoComplete());
  EXPECT_FALSE(output.hasEchoed());
}

}  // namespace
}  // namespace tessarok::terminal
