// The program as a job of a shell that has job control.

#include <fstream>
#include <gtest/gtest.h>
#include <signal.h>
#include <string>
#include <termios.h>
#include <thread>

#include "tests/desktops/terminal/UserAtTerminal.h"

namespace tessarok::testing {
namespace {

/// Waits until the terminal is set in this way.
bool becomesRaw(const UserAtTerminal& user, bool raw) {
  for (int i = 0; i < 300; ++i) {
    const bool isRaw = (user.settings().c_lflag & ICANON) == 0;
    if (isRaw == raw) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  return false;
}

/// A script that starts the program in the terminal that it is run in.
void writeStarter(const std::filesystem::path& file) {
  std::ofstream script(file);
  // It is the first one in this terminal as far as it knows.
  script << "unset TESSAROK_TERMINAL; exec '" TESSAROK_PROGRAM "' --resources '" TESSAROK_TEST_DATA
            "' terminal -- sh -c 'stty -a; read line; echo \"got=$line\"'\n";
}

TEST(JobControl, StartedInTheBackgroundItWaitsForTheTerminal) {
  UserAtTerminal user({"bash", "--norc", "--noediting", "-i"});
  ASSERT_TRUE(user.sees("ready>"));
  writeStarter(user.home() / "start");
  // An editor of command lines changes the terminal while it waits for keys.
  user.type("stty -echo -icanon -icrnl; sh ~/start & sleep 1; stty echo icanon icrnl; jobs\r");
  ASSERT_TRUE(user.sees("Stopped")) << user.screen();
  user.type("fg\r");
  ASSERT_TRUE(user.sees(" icanon")) << user.screen();
  user.type("vbh\r");
  EXPECT_TRUE(user.sees("got=")) << user.screen();
}

TEST(JobControl, StoppedFromOutsideItLeavesTheTerminalAsItWas) {
  UserAtTerminal user({"cat"});
  ASSERT_TRUE(becomesRaw(user, true));
  user.send(SIGTSTP);
  EXPECT_TRUE(becomesRaw(user, false));
  user.send(SIGCONT);
  EXPECT_TRUE(becomesRaw(user, true));
  user.type("vbh\r");
  EXPECT_TRUE(user.sees("vbh"));
}

}  // namespace
}  // namespace tessarok::testing
