// How a program in the terminal starts and ends, and what is left behind then.

#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <signal.h>
#include <string>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/terminal/UserAtTerminal.h"

namespace tessarok::testing {
namespace {

/// The settings of the terminal are those from before the start.
void expectRestored(const UserAtTerminal& user) {
  const auto now = user.settings();
  const auto& before = user.formerSettings();
  EXPECT_EQ(now.c_iflag, before.c_iflag);
  EXPECT_EQ(now.c_oflag, before.c_oflag);
  EXPECT_EQ(now.c_cflag, before.c_cflag);
  EXPECT_EQ(now.c_lflag, before.c_lflag);
  EXPECT_EQ(std::memcmp(now.c_cc, before.c_cc, sizeof now.c_cc), 0);
}

TEST(TerminalProgram, ReturnsTheProgramsExitStatus) {
  UserAtTerminal user({"sh", "-c", "echo last words; exit 7"});
  EXPECT_EQ(user.exitStatus(), 7);
  EXPECT_NE(user.screen().find("last words\r\n"), std::string::npos) << user.screen();
  expectRestored(user);
}

TEST(TerminalProgram, ReturnsTheSignalThatKilledTheProgram) {
  UserAtTerminal user({"sh", "-c", "kill -KILL $$"});
  EXPECT_EQ(user.exitStatus(), 128 + SIGKILL);
  expectRestored(user);
}

TEST(TerminalProgram, ShowsEverythingThatWasWrittenBeforeTheEnd) {
  UserAtTerminal user({"sh", "-c", "seq 1 200000; echo the end"});
  EXPECT_EQ(user.exitStatus(), 0);
  EXPECT_NE(user.screen().find("\r\n199999\r\n200000\r\nthe end\r\n"), std::string::npos);
}

TEST(TerminalProgram, DoesNotWaitForWhatRunsInTheBackground) {
  UserAtTerminal user({"bash", "--norc", "-c", "sleep 1000 & exit 3"});
  EXPECT_EQ(user.exitStatus(), 3);
}

TEST(TerminalProgram, DoesNotStayWithAProgramThatHasLeftItsTerminal) {
  UserAtTerminal user({"bash", "--norc", "-c", "exec sleep 1000 <&- >&- 2>&-"});
  EXPECT_EQ(user.exitStatus(), 128 + SIGHUP);
  expectRestored(user);
}

TEST(TerminalProgram, SaysWhenThereIsNoSuchCommand) {
  UserAtTerminal user({"no-such-command"});
  EXPECT_EQ(user.exitStatus(), 127);
  EXPECT_EQ(user.screen(), "tessarok: no-such-command: command not found\r\n");
}

TEST(TerminalProgram, SaysWhenACommandCannotBeRun) {
  UserAtTerminal user({"/"});
  EXPECT_EQ(user.exitStatus(), 126);
  EXPECT_EQ(user.screen(), "tessarok: /: Permission denied\r\n");
}

TEST(TerminalProgram, ASignalRestoresTheTerminal) {
  UserAtTerminal user({"sh", "-c", "printf '\\033[?1049hstarted'; cat"});
  ASSERT_TRUE(user.sees("started"));
  EXPECT_NE(user.settings().c_lflag, user.formerSettings().c_lflag);
  user.send(SIGTERM);
  EXPECT_EQ(user.exitStatus(), 128 + SIGTERM);
  expectRestored(user);
  // Back from the alternate screen.
  EXPECT_TRUE(user.sees("\x1b[?1049l"));
}

TEST(TerminalProgram, ReportsOfKeysEndWithTheProgramThatAskedForThem) {
  UserAtTerminal user({"sh", "-c", "printf '\\033[>1u\\033[>4;2mstarted'; kill -KILL $$"});
  ASSERT_TRUE(user.sees("started"));
  EXPECT_EQ(user.exitStatus(), 128 + SIGKILL);
  EXPECT_TRUE(user.sees("\x1b[<1u\x1b[>4m")) << user.screen();
}

TEST(TerminalProgram, EverySignalThatEndsItRestoresTheTerminal) {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGALRM, SIGUSR1, SIGUSR2}) {
    UserAtTerminal user({"sh", "-c", "printf started; cat"});
    ASSERT_TRUE(user.sees("started"));
    user.send(signal);
    EXPECT_EQ(user.exitStatus(), 128 + signal);
    expectRestored(user);
  }
}

TEST(TerminalProgram, EndsWhereThereIsNoScreen) {
  UserAtTerminal user({"sh", "-c",
                       "env -u TESSAROK_TERMINAL '" TESSAROK_PROGRAM
                       "' --resources '" TESSAROK_TEST_DATA
                       "' terminal -- sleep 100 >&-; echo ended"});
  EXPECT_TRUE(user.sees("ended")) << user.screen();
}

TEST(TerminalProgram, AWindowThatHangsDoesNotKeepASignalFromEndingIt) {
  UserAtTerminal user({"sh", "-c", "printf started; read -r x; echo ended"});
  ASSERT_TRUE(user.sees("started"));
  user.stopScreen();
  user.type("\n");
  ASSERT_TRUE(user.programHasEnded());
  user.send(SIGTERM);
  // The program's own, or that of the signal, whichever was first.
  const int status = user.exitStatusUnread();
  EXPECT_TRUE(status == 0 || status == 128 + SIGTERM) << status;
}

TEST(TerminalProgram, ASignalHangsUpOnTheProgram) {
  UserAtTerminal user({"sh", "-c",
                       "trap 'echo hung up > \"$HOME/end\"; exit' HUP; printf started; "
                       "while :; do read -r x || sleep 0.1; done"});
  ASSERT_TRUE(user.sees("started"));
  user.send(SIGTERM);
  EXPECT_EQ(user.exitStatus(), 128 + SIGTERM);
  EXPECT_TRUE(becomes(user.home() / "end", "hung up\n"));
}

TEST(TerminalProgram, AClosedWindowEndsBoth) {
  UserAtTerminal user({"sh", "-c",
                       "trap 'echo hung up > \"$HOME/end\"; exit' HUP; printf started; "
                       "while :; do read -r x || sleep 0.1; done"});
  ASSERT_TRUE(user.sees("started"));
  user.hangUp();
  EXPECT_EQ(user.exitStatus(), 128 + SIGHUP);
  EXPECT_TRUE(becomes(user.home() / "end", "hung up\n"));
}

TEST(TerminalProgram, DictionariesThatAreCutShortEndTheCorrectionAlone) {
  const virtualdesktop::TemporaryDirectory data;
  for (const auto& entry : std::filesystem::directory_iterator(TESSAROK_TEST_DATA))
    std::filesystem::copy(entry.path(), data.path() / entry.path().filename());
  UserAtTerminal user({"sh", "-c", "printf started; cat"}, {.resources = data.path()});
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbdtn ");
  ASSERT_TRUE(user.sees("привет "));
  for (const auto* name : {"dict_en.txt", "dict_ru.txt"})
    std::filesystem::resize_file(data.path() / name, 0);
  user.type("\nруддщ ");
  EXPECT_TRUE(user.sees("руддщ "));
  user.type("\n\x04");
  EXPECT_EQ(user.exitStatus(), 0);
  EXPECT_EQ(user.settings().c_lflag, user.formerSettings().c_lflag);
}

/// Those that this process ignores, and so whatever it starts, as the system tells them: the first
/// 28, of four a digit. Two behind 31 belong to the C library, which a program that was started by
/// `make` has ignored until its first thread.
std::string ignoredSignals() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line) && !line.starts_with("SigIgn:")) {
  }
  return line.substr(line.size() - 7);
}

const std::vector<std::string> kTellsIgnoredSignals = {"sh", "-c",
                                                       "grep SigIgn /proc/self/status | tail -c 8"};

TEST(TerminalProgram, TheProgramHasTheSignalsThatItExpects) {
  // Of what is written to a pipe that nobody reads the shell must hear.
  UserAtTerminal user(kTellsIgnoredSignals);
  EXPECT_EQ(user.exitStatus(), 0);
  EXPECT_TRUE(user.sees(ignoredSignals() + "\r\n")) << user.screen();
}

TEST(TerminalProgram, TheProgramIgnoresWhatItsStarterIgnores) {
  ::signal(SIGPIPE, SIG_IGN);
  UserAtTerminal user(kTellsIgnoredSignals);
  EXPECT_EQ(user.exitStatus(), 0);
  EXPECT_TRUE(user.sees(ignoredSignals() + "\r\n")) << user.screen();
}

TEST(TerminalProgram, WhatWasLearnedIsOnTheDiskAfterASignal) {
  UserAtTerminal user({"sh", "-c", "printf started; cat"});
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbdtn ");
  ASSERT_TRUE(user.sees("привет "));
  user.type("\x1b ");
  ASSERT_TRUE(user.sees("ghbdtn "));
  user.send(SIGTERM);
  EXPECT_EQ(user.exitStatus(), 128 + SIGTERM);
  EXPECT_NE(contentOf(user.learned() / "rejects.txt").find("ghbdtn"), std::string::npos);
}

TEST(TerminalProgram, TheWindowsSizeIsPassedOn) {
  UserAtTerminal::Setup setup;
  setup.rows = 31;
  setup.columns = 97;
  UserAtTerminal user(
      {"sh", "-c", "trap 'stty size' WINCH; stty size; while :; do sleep 0.05; done"}, setup);
  ASSERT_TRUE(user.sees("31 97\r\n")) << user.screen();
  user.resize(40, 100);
  EXPECT_TRUE(user.sees("40 100\r\n")) << user.screen();
}

TEST(TerminalProgram, TheTerminalsSettingsArePassedOnWithUtf8) {
  UserAtTerminal::Setup setup;
  setup.erase = '\b';
  UserAtTerminal user({"sh", "-c", "stty -a"}, setup);
  EXPECT_EQ(user.exitStatus(), 0);
  EXPECT_NE(user.screen().find(" iutf8"), std::string::npos) << user.screen();
  EXPECT_NE(user.screen().find("erase = ^H"), std::string::npos) << user.screen();
}

TEST(TerminalProgram, WithoutWordDataAltSpaceStillWorks) {
  virtualdesktop::TemporaryDirectory empty;
  UserAtTerminal::Setup setup;
  setup.resources = empty.path();
  UserAtTerminal user({"sh", "-c", "printf started; cat"}, setup);
  ASSERT_TRUE(user.sees("automatic correction is off, Alt+Space works\r\n")) << user.screen();
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbdtn \r");
  EXPECT_TRUE(user.sees("\r\nghbdtn \r\n")) << user.screen();
  user.type("ghbdtn\x1b \r");
  EXPECT_TRUE(user.sees("\r\nпривет\r\n")) << user.screen();
}

}  // namespace
}  // namespace tessarok::testing
