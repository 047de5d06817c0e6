#include <gtest/gtest.h>
#include <unistd.h>

#include "desktops/terminal/PtyModes.h"

namespace tessarok::terminal {
namespace {

termios withFlags(tcflag_t flags) {
  termios settings{};
  settings.c_lflag = flags;
  return settings;
}

TEST(PtyModes, APasswordIsALineThatIsNotShown) {
  EXPECT_TRUE(PtyModes(withFlags(ICANON)).isSecret());
  EXPECT_FALSE(PtyModes(withFlags(ICANON | ECHO)).isSecret());
  EXPECT_FALSE(PtyModes(withFlags(0)).isSecret());
  EXPECT_TRUE(PtyModes(withFlags(0)).isRaw());
  EXPECT_FALSE(PtyModes(withFlags(ECHO)).isRaw());
}

TEST(PtyModes, WithoutALineNothingIsTakenBack) {
  EXPECT_TRUE(PtyModes(withFlags(ECHO)).takesNothingBack());
  // A program that shows the keys itself may well know an erase character.
  EXPECT_FALSE(PtyModes(withFlags(0)).takesNothingBack());
}

TEST(PtyModes, ALineIsTakenBackByCharacters) {
  auto settings = withFlags(ECHO | ICANON);
  settings.c_cc[VERASE] = '\x7f';
  EXPECT_TRUE(PtyModes(settings).takesNothingBack());
  settings.c_iflag = IUTF8;
  EXPECT_FALSE(PtyModes(settings).takesNothingBack());
  settings.c_cc[VERASE] = _POSIX_VDISABLE;
  EXPECT_TRUE(PtyModes(settings).takesNothingBack());
}

TEST(PtyModes, EraseIsTheOneInForce) {
  auto settings = withFlags(0);
  settings.c_cc[VERASE] = '\b';
  EXPECT_EQ(PtyModes(settings).erase(), '\b');
  settings.c_cc[VERASE] = _POSIX_VDISABLE;
  EXPECT_EQ(PtyModes(settings).erase(), '\x7f');
}

TEST(PtyModes, KnowsWhatClearsTheWord) {
  auto settings = withFlags(0);
  settings.c_cc[VKILL] = 21;
  EXPECT_TRUE(PtyModes(settings).clearsWord('\x15'));
  EXPECT_FALSE(PtyModes(settings).clearsWord('\x16'));
  // Characters that are switched off are all NUL.
  EXPECT_FALSE(PtyModes(settings).clearsWord('\0'));
}

}  // namespace
}  // namespace tessarok::terminal
