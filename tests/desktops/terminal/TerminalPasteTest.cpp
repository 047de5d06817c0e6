// Large pastes, through a real pseudo-terminal: not a byte is lost or changed.

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>

#include "tests/desktops/terminal/UserAtTerminal.h"

namespace tessarok::testing {
namespace {

constexpr std::size_t kSize = 10 * 1024 * 1024;

/// Lines that would be full of fixes if they were typed, and bytes that are no UTF-8.
std::string lines() {
  const std::string_view words[] = {"ghbdtn", "vbh", "руддщ", "hello", "\xff\xd0", "😀", "`", ";"};
  std::mt19937 random(1);
  std::string text;
  while (text.size() < kSize) {
    for (int i = 0; i < 12; ++i) {
      text += words[random() % std::size(words)];
      text += ' ';
    }
    text += '\n';
  }
  return text;
}

/// Every byte there is, in any order.
std::string noise() {
  std::mt19937 random(2);
  std::string bytes(kSize, '\0');
  for (auto& byte : bytes)
    byte = static_cast<char>(random() & 0xFF);
  return bytes;
}

/// `expected` may be too long to print.
void expectSame(const std::string& received, const std::string& expected) {
  EXPECT_EQ(received.size(), expected.size());
  const auto [here, there] =
      std::mismatch(received.begin(), received.end(), expected.begin(), expected.end());
  EXPECT_TRUE(here == received.end() && there == expected.end())
      << "first difference at " << here - received.begin();
}

TEST(Paste, TenMegabytesOfLinesReachCat) {
  UserAtTerminal user({"sh", "-c", "printf started; cat > \"$HOME/pasted\"; printf done"});
  ASSERT_TRUE(user.sees("started"));
  const auto text = lines();
  user.type(text);
  user.type("\x04");
  ASSERT_TRUE(user.sees("done"));
  expectSame(contentOf(user.home() / "pasted"), text);
}

TEST(Paste, TenMegabytesOfNoiseReachAProgramThatReadsRawBytes) {
  UserAtTerminal user({"sh", "-c",
                       "stty raw -echo; printf started; head -c " + std::to_string(kSize) +
                           " > \"$HOME/pasted\"; printf done"});
  ASSERT_TRUE(user.sees("started"));
  const auto bytes = noise();
  user.type(bytes);
  ASSERT_TRUE(user.sees("done"));
  expectSame(contentOf(user.home() / "pasted"), bytes);
}

TEST(Paste, AProgramThatReadsLateHoldsThePasteUpAndLosesNothing) {
  UserAtTerminal user({"sh", "-c",
                       "mkfifo \"$HOME/go\"; stty raw -echo; printf started; read -r x < "
                       "\"$HOME/go\"; head -c " +
                           std::to_string(kSize) + " > \"$HOME/pasted\"; printf done"});
  ASSERT_TRUE(user.sees("started"));
  const auto bytes = noise();
  const auto taken = user.typeUntilStuck(bytes);
  // What fits into the pseudo-terminals and the queues between them, and no more.
  EXPECT_LT(taken, 1024u * 1024);
  std::ofstream(user.home() / "go") << "go\n";
  user.type(std::string_view(bytes).substr(taken));
  ASSERT_TRUE(user.sees("done"));
  expectSame(contentOf(user.home() / "pasted"), bytes);
}

TEST(Paste, AShortOneWithoutBracketsStaysAsItIs) {
  UserAtTerminal user({"sh", "-c",
                       "printf started; read -r line; echo \"got: $line\"; sleep 0.2; printf next; "
                       "cat"});
  ASSERT_TRUE(user.sees("started"));
  const std::string pasted =
      "ghbdtn vbh ghbdtn vbh ghbdtn vbh ghbdtn vbh ghbdtn vbh ghbdtn vbh ghbdtn vbh";
  user.type(pasted + "\r");
  EXPECT_TRUE(user.sees("got: " + pasted + "\r\n")) << user.screen();
  ASSERT_TRUE(user.sees("next"));
  user.type("ghbdtn vbh\r");
  EXPECT_TRUE(user.sees("привет мир\r\n")) << user.screen();
}

TEST(Paste, WhatATerminalWouldPutInBracketsWasTyped) {
  UserAtTerminal user({"sh", "-c", "printf '\\033[?2004hstarted'; cat"});
  ASSERT_TRUE(user.sees("started"));
  const std::string typed =
      "hello world, hello world, hello world, hello world, hello world, hello world, ghbdtn ";
  user.type(typed + "\r");
  EXPECT_TRUE(user.sees("hello world, привет \r\n")) << user.screen();
}

TEST(Paste, AWordTypedBehindAPasteIsPartOfIt) {
  UserAtTerminal user({"sh", "-c", "printf started; cat"});
  ASSERT_TRUE(user.sees("started"));
  user.type("\x1b[200~abc\x1b[201~ghbdtn ghbdtn \r");
  EXPECT_TRUE(user.sees("abc\x1b[201~ghbdtn привет \r\n")) << user.screen();
}

}  // namespace
}  // namespace tessarok::testing
