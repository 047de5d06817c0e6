// What a person types, through a real pseudo-terminal, with the built program in between.

#include <gtest/gtest.h>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/terminal/UserAtTerminal.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

/// Runs cat, which repeats every line that it gets: so the line is shown as the program got it.
class TypingIntoCat : public ::testing::Test {
 protected:
  void expectLine(std::string_view keys, std::string_view line) {
    user_.type(keys);
    user_.type("\r");
    const auto repeated = "\r\n" + std::string(line) + "\r\n";
    EXPECT_TRUE(user_.sees(repeated)) << user_.screen();
  }

  UserAtTerminal user_{{"sh", "-c", "printf started; cat"}};

 private:
  void SetUp() override { ASSERT_TRUE(user_.sees("started")); }
};

TEST_F(TypingIntoCat, FixesWordsAndSwitchesTheLayout) {
  expectLine("ghbdtn vbh", "привет мир");
  // With the line the layout goes home.
  expectLine("ls", "ls");
}

TEST_F(TypingIntoCat, FixesTheOtherWay) {
  expectLine("руддщ цщкдв", "hello world");
}

TEST_F(TypingIntoCat, TheDesktopsOwnSwitchCounts) {
  // Converted to English, after which Cyrillic letters type English; then the person switches
  // the desktop's layout to English, and back.
  expectLine("руддщ ", "hello ");
  expectLine("world ", "world ");
  expectLine("привет ", "привет ");
}

TEST_F(TypingIntoCat, BackspaceShortensTheWord) {
  expectLine("ghbdtx\x7fn ", "привет ");
}

TEST_F(TypingIntoCat, LeavesAWordAloneAfterAMoveOfTheCursor) {
  // The kernel's line editor shows the arrow as it is.
  expectLine("ghbdtn\x1b[D ", "ghbdtn\x1b[D ");
}

TEST_F(TypingIntoCat, LeavesAWordAloneAfterAnUnknownKey) {
  expectLine("ghbd\x1b[15~tn ", "ghbd\x1b[15~tn ");
}

TEST_F(TypingIntoCat, AltSpaceConvertsAndConvertsBack) {
  expectLine("ghbdtn\x1b ", "привет");
}

TEST_F(TypingIntoCat, AltSpaceUndoesAFix) {
  user_.type("ghbdtn ");
  ASSERT_TRUE(user_.sees("привет "));
  expectLine("\x1b ", "ghbdtn ");
}

TEST_F(TypingIntoCat, ThePauseKeyPausesAndIsTyped) {
  expectLine("`ghbdtn ", "`ghbdtn ");
}

TEST_F(TypingIntoCat, ControlSpaceSwitchesAndIsNotTyped) {
  expectLine(std::string("\0ghbdtn", 7), "привет");
  expectLine(std::string("\0hello", 6), "hello");
}

TEST_F(TypingIntoCat, PassesWhatItDoesNotUnderstand) {
  expectLine("\xff\xc0 \xd0", "\xff\xc0 \xd0");
}

TEST_F(TypingIntoCat, KillingTheLineForgetsTheWord) {
  expectLine("xyz\x15ghbdtn ", "привет ");
}

TEST(Typing, ErasesWithTheCharacterInForce) {
  UserAtTerminal::Setup setup;
  setup.erase = '\b';
  UserAtTerminal user({"sh", "-c", "printf started; cat"}, setup);
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbdtx\bn \r");
  EXPECT_TRUE(user.sees("\r\nпривет \r\n")) << user.screen();
}

/// What a command prints follows a sequence and a carriage return.
class TypingIntoBash : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(user_.sees("ready> ")); }

  UserAtTerminal user_{{"bash", "--norc"}};
};

TEST_F(TypingIntoBash, FixesWords) {
  user_.type("echo ghbdtn vbh\r");
  EXPECT_TRUE(user_.sees("\rпривет мир\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, AReturnThatEndsAWordRunsTheFixedLine) {
  user_.type("echo ghbdtn\r");
  EXPECT_TRUE(user_.sees("\rпривет\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, ArrowsReachTheLineEditorAndForgetTheWord) {
  user_.type("echo ghbdn\x1b[Dt\x1b[C \r");
  EXPECT_TRUE(user_.sees("\rghbdtn\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, TheEscapeKeyNeedsNothingBehindIt) {
  user_.type("read -rsn1 key; printf '<%q>' \"$key\"\r");
  user_.type("\x1b");
  EXPECT_TRUE(user_.sees("<$'\\E'>")) << user_.screen();
}

TEST_F(TypingIntoBash, APasteWithBracketsIsNotTyped) {
  user_.type("echo \x1b[200~ghbdtn vbh \x1b[201~\r");
  EXPECT_TRUE(user_.sees("\rghbdtn vbh\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, NamesOfCommandsStay) {
  user_.type("jq() { echo called $1; }; clear\r");
  ASSERT_TRUE(user_.sees("ready> "));
  user_.type("jq jq\r");
  EXPECT_TRUE(user_.sees("called jq")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("echo \"ghbdtn vbh\"\r");
  EXPECT_TRUE(user_.sees("\rпривет мир\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, ThePersonsLayoutIsInForceWhenTheLineIsShown) {
  user_.type(std::string("\0", 1));
  user_.type("vbh");
  EXPECT_TRUE(user_.sees("мир")) << user_.screen();
}

TEST_F(TypingIntoBash, BehindATextInQuotesTheShellHasItsOwnSigns) {
  user_.type("echo \"ghbdtn vbh\" && echo 'ghbdtn' | cat; echo \"vbh $0 ghbdtn\"\r");
  EXPECT_TRUE(user_.sees("привет мир\r\nпривет\r\nмир bash привет\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, SwitchesOffAndOnInBand) {
  user_.type("printf '\\033]7717;off\\a'; read -rd \\\\ a; echo \"${a#*tessarok}\"\r");
  ASSERT_TRUE(user_.sees(";off;en")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("echo ghbdtn vbh\r");
  EXPECT_TRUE(user_.sees("\rghbdtn vbh\r\n")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("printf '\\033]7717;on\\a'; read -rd \\\\ a; echo \"${a#*tessarok}\"\r");
  ASSERT_TRUE(user_.sees(";on;en")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("echo ghbdtn vbh\r");
  EXPECT_TRUE(user_.sees("\rпривет мир\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, CommandsSpeakToTheTerminalThatTheyRunIn) {
  user_.type(std::string(TESSAROK_PROGRAM) + " off\r");
  ASSERT_TRUE(user_.sees("this terminal: correction off, layout English")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type(std::string(TESSAROK_PROGRAM) + " status\r");
  ASSERT_TRUE(user_.sees("this terminal: correction off, layout English")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type(std::string(TESSAROK_PROGRAM) + " on\r");
  ASSERT_TRUE(user_.sees("this terminal: correction on, layout English")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("echo ghbdtn vbh\r");
  EXPECT_TRUE(user_.sees("\rпривет мир\r\n")) << user_.screen();
}

TEST_F(TypingIntoBash, WhatIsTypedWhileACommandAsksComesBehindIt) {
  for (const std::string command : {"status", "off", "on", "report -"}) {
    user_.type(TESSAROK_PROGRAM + (" " + command + "\recho ahe\"\"ad\rec"));
    user_.type("ho beh\"\"ind\r");
    EXPECT_TRUE(user_.sees("\rahead\r\n")) << command << '\n' << user_.screen();
    EXPECT_TRUE(user_.sees("\rbehind\r\n")) << command << '\n' << user_.screen();
  }
}

TEST_F(TypingIntoBash, NobodyButWhoReadsTheAnswerGivesKeysBack) {
  // As a file with such sequences would, when it is shown; the answer is read by nobody who knows
  // it.
  user_.type(
      "printf '\\033]7717;status;wait\\a\\033]7717;go;0;6563686f20780d\\a'; read -rd \\\\ a; "
      "clear\r");
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("echo ghbdtn vbh\r");
  EXPECT_TRUE(user_.sees("\rпривет мир\r\n")) << user_.screen();
  EXPECT_EQ(user_.screen().find("\rx\r\n"), std::string::npos) << user_.screen();
}

TEST_F(TypingIntoBash, WhoReadsTheAnswerGivesBackWhatWasTypedAndNothingElse) {
  // The answer's last part is the number; what is said to have been typed was not, and then was.
  user_.type(
      "go() { printf '\\033]7717;status;wait\\a'; IFS= read -rsd \\\\ a; a=${a##*;}; "
      "printf '\\033]7717;go;%s;%s\\a' \"${a%?}\" $1; }; clear\r");
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  // "echo x", Return.
  user_.type("go 6563686f20780d; echo do\"\"ne\r");
  ASSERT_TRUE(user_.sees("done\r\n")) << user_.screen();
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  EXPECT_EQ(user_.screen().find("\rx\r\n"), std::string::npos) << user_.screen();
  // The Return that ended this line was typed: it comes once more.
  user_.type("go 0d\r");
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  EXPECT_TRUE(user_.sees("ready> ")) << user_.screen();
}

// What asked leaves the terminal as a line editor wants it, so that nothing depends on who is
// first, the editor or the Return.
TEST_F(TypingIntoBash, AReturnThatWasReadAsALineFeedComesBackAsAReturn) {
  user_.type(
      "bind -x '\"\\C-j\": echo line\"\"feed'; go() { printf '\\033]7717;status;wait\\a'; "
      "IFS= read -rsd \\\\ a; a=${a##*;}; stty -icrnl; printf '\\033]7717;go;%s;0a\\a' "
      "\"${a%?}\"; }\r");
  ASSERT_TRUE(user_.sees("ready> ")) << user_.screen();
  user_.type("PS1='again> '; go\r");
  // The prompt of the line that the Return has ended, and of the next one.
  EXPECT_TRUE(user_.sees("again> \r\n")) << user_.screen();
  EXPECT_TRUE(user_.sees("again> ")) << user_.screen();
  EXPECT_EQ(user_.screen().find("linefeed"), std::string::npos) << user_.screen();
}

TEST_F(TypingIntoBash, TheCursorShowsTheLayout) {
  user_.type("echo ghbdtn ");
  EXPECT_TRUE(user_.sees("\x1b]12;")) << user_.screen();
  user_.type("\r");
  EXPECT_TRUE(user_.sees("\x1b]112\a")) << user_.screen();
}

TEST(Nested, ASecondOneRunsTheProgramAsItIs) {
  UserAtTerminal user({TESSAROK_PROGRAM, "terminal", "--", "sh", "-c", "echo started; cat"});
  ASSERT_TRUE(user.sees("this terminal is corrected already; sh runs in it as it is"));
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbdtn vbh\r");
  EXPECT_TRUE(user.sees("\r\nпривет мир\r\n")) << user.screen();
}

/// What the kernel has taken in for a line editor it does not take back in a line of its own.
TEST(TypedAhead, AWordThatTwoProgramsReadStays) {
  UserAtTerminal user({"sh", "-c",
                       "stty -icanon; printf started; until [ -e \"$HOME/go\" ]; do :; done; "
                       "stty icanon; printf lines; read -r x; read -r y; echo \"got $x, $y\""});
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbd");
  ASSERT_TRUE(user.sees("ghbd"));
  writeFile(user.home() / "go", "");
  ASSERT_TRUE(user.sees("lines"));
  user.type("tn \rghbdtn \r");
  EXPECT_TRUE(user.sees("got ghbdtn, привет")) << user.screen();
}

TEST(Locale, WhereTextIsNotUtf8TheProgramRunsAsItIs) {
  const auto refuses = [](const std::string& locale) {
    UserAtTerminal user({"env", "-u", "TESSAROK_TERMINAL", locale, TESSAROK_PROGRAM, "terminal",
                         "--", "sh", "-c", "echo started; cat"});
    EXPECT_TRUE(user.sees("started")) << user.screen();
    return user.screen().find(
               "the locale (LC_ALL, LC_CTYPE or LANG) is not one with UTF-8; sh "
               "runs in it as it is") != std::string::npos;
  };
  EXPECT_TRUE(refuses("LC_ALL=C"));
  EXPECT_TRUE(refuses("LC_ALL=no_SUCH.UTF-8"));
  EXPECT_FALSE(refuses("LC_ALL=C.UTF-8"));
}

/// Runs a prompt that prints "ready" and then, in brackets, what it was given.
void expectUntouched(const std::string& prompt, std::string_view keys, std::string_view answer) {
  UserAtTerminal user({"sh", "-c", prompt});
  ASSERT_TRUE(user.sees("ready"));
  user.type(keys);
  EXPECT_TRUE(user.sees("[" + std::string(answer) + "]")) << user.screen();
  EXPECT_EQ(user.screen().find("привет"), std::string::npos);
}

TEST(Secrets, APasswordIsNotTouched) {
  expectUntouched("stty -echo; printf ready; IFS= read -r x; printf '[%s]' \"$x\"", "ghbdtn vbh \r",
                  "ghbdtn vbh ");
}

TEST(Secrets, APasswordIsNotTranslatedEither) {
  // Alt+Space and Control+Space do nothing and are no part of it.
  expectUntouched("stty -echo -isig; printf ready; IFS= read -r x; printf '[%s]' \"$x\"",
                  std::string("\0ghbdtn\x1b vbh\r", 13), "ghbdtnvbh");
}

TEST(Secrets, AFewSecretCharactersAreNotTouched) {
  expectUntouched("stty -icanon -echo; printf ready; printf '[%s]' \"$(head -c 11)\"",
                  "ghbdtn vbh ", "ghbdtn vbh ");
}

TEST(Secrets, BashReadsThemUntouched) {
  UserAtTerminal user({"bash", "--norc"});
  ASSERT_TRUE(user.sees("ready> "));
  user.type("IFS= read -rsp begin$((1+1)) x; echo \"[$x]\"\r");
  ASSERT_TRUE(user.sees("begin2"));
  user.type("ghbdtn vbh \r");
  EXPECT_TRUE(user.sees("[ghbdtn vbh ]")) << user.screen();
}

TEST(KeyByKey, WithoutALineEditorNothingIsRetyped) {
  // The kernel would show the erase characters, and the program would read them.
  expectUntouched("stty -icanon; printf ready; printf '[%s]' \"$(head -c 13)\"", "ghbdtn\x1b vbh  ",
                  "ghbdtn\x1b vbh  ");
}

TEST(KeyByKey, WithoutAnEraseCharacterNothingIsRetyped) {
  expectUntouched("stty erase undef; printf ready; IFS= read -r x; printf '[%s]' \"$x\"",
                  "ghbdtn vbh \r", "ghbdtn vbh ");
}

TEST(KeyByKey, WhereBytesAreErasedNothingIsRetyped) {
  // As "stty sane" of GNU leaves it; half a letter would stay.
  expectUntouched("stty -iutf8; printf ready; IFS= read -r x; printf '[%s]' \"$x\"",
                  "руддщ цщкдв \r", "руддщ цщкдв ");
}

TEST(KeyByKey, ThePersonsOwnLayoutHasNoSayEither) {
  UserAtTerminal user({"sh", "-c",
                       "stty -icanon; printf 'go on? '; printf '[%s]' \"$(head -c 1)\"; stty "
                       "icanon; printf ready; cat"});
  ASSERT_TRUE(user.sees("go on? "));
  user.type(std::string("\0y", 2));
  EXPECT_TRUE(user.sees("[y]")) << user.screen();
  ASSERT_TRUE(user.sees("ready"));
  // It is waiting all the same.
  user.type("vbh\r");
  EXPECT_TRUE(user.sees("\r\nмир\r\n")) << user.screen();
}

TEST(PersonsDictionary, ThatIsNotUsedIsNamed) {
  const virtualdesktop::TemporaryDirectory home;
  const auto dictionary = home.path() / ".local" / "share" / "Tessarok" / "dictionary.txt";
  writeFile(dictionary, "слово\n\xff\n");
  // With room for the path in one line.
  UserAtTerminal user({"sh", "-c", "printf started; cat"}, {.columns = 200, .home = home.path()});
  ASSERT_TRUE(user.sees("started"));
  user.type("ghbdtn\r");
  EXPECT_TRUE(user.sees("\r\nпривет\r\n")) << user.screen();
  user.type("\x04");
  EXPECT_TRUE(user.sees("no word of " + dictionary.string() + " counts: line 2 is not valid UTF-8"))
      << user.screen();
}

TEST(AlternateScreen, SwitchesOffUntilItIsLeft) {
  UserAtTerminal user(
      {"sh", "-c", "printf '\\033[?1049hfull'; head -n1; printf '\\033[?1049lleft'; cat"});
  ASSERT_TRUE(user.sees("full"));
  user.type("ghbdtn vbh \r");
  EXPECT_TRUE(user.sees("\r\nghbdtn vbh \r\n")) << user.screen();
  ASSERT_TRUE(user.sees("left"));
  user.type("ghbdtn \r");
  EXPECT_TRUE(user.sees("\r\nпривет \r\n")) << user.screen();
}

}  // namespace
}  // namespace tessarok::testing
