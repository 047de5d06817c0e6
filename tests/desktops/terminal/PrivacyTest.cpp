// What is typed in a terminal is written nowhere but into the learned lists, and there only words
// whose fix was rejected.

#include <cstdlib>
#include <gtest/gtest.h>

#include "tests/desktops/terminal/UserAtTerminal.h"
#include "tests/support/SecretSearch.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

namespace fs = std::filesystem;

/// A word that is fixed, as typed and as fixed; one that is not; and a password. No test data and
/// no source of this test holds them in one piece.
const Secrets kSecrets = {std::string("vjc") + "rdf", std::string("мос") + "ква",
                          std::string("zqxv") + "jkw", std::string("Gfh") + "jkm7"};

class TerminalPrivacy : public ::testing::Test {
 protected:
  TerminalPrivacy() {
    // The log is on, and temporary files have a place of their own.
    ::setenv("TESSAROK_DEBUG", "1", 1);
    ::setenv("TESSAROK_DEBUG_PATH", (folder_.path() / "debug.log").c_str(), 1);
    ::setenv("TMPDIR", folder_.path().c_str(), 1);
  }

  virtualdesktop::TemporaryDirectory folder_;
};

TEST_F(TerminalPrivacy, NothingTypedIsKept) {
  UserAtTerminal user({"sh", "-c", "stty -echo; echo password:; read x; stty echo; echo in; cat"});
  ASSERT_TRUE(user.sees("password:"));
  user.type(kSecrets[3] + "\r");
  ASSERT_TRUE(user.sees("in\r\n"));
  user.type(kSecrets[0] + " ");
  ASSERT_TRUE(user.sees(kSecrets[1])) << user.screen();
  user.type("hello " + kSecrets[2] + " \r");
  ASSERT_TRUE(user.sees(kSecrets[2]));
  EXPECT_EQ(processesWith(kSecrets), std::vector<std::string>());
  EXPECT_EQ(user.screen().find(kSecrets[3]), std::string::npos);
  user.type("\x04");
  EXPECT_EQ(user.exitStatus(), 0);
  // There was something to find: the log tells of the words, as numbers.
  EXPECT_NE(readFile(folder_.path() / "debug.log").find("eval count=6"), std::string::npos);
  // The home is in this folder too.
  EXPECT_EQ(filesWith(kSecrets, folder_.path()), std::vector<std::string>());
}

TEST_F(TerminalPrivacy, ARejectedWordIsKeptInTheLearnedListAlone) {
  UserAtTerminal user({"cat"});
  user.type(kSecrets[0] + " ");
  ASSERT_TRUE(user.sees(kSecrets[1]));
  user.type("\x1b ");
  const auto learned = user.learned() / "rejects.txt";
  ASSERT_TRUE(becomes(learned, kSecrets[0] + "\t1\n"));
  user.type("\r\x04");
  EXPECT_EQ(user.exitStatus(), 0);
  // The home is in this folder too.
  EXPECT_EQ(filesWith(kSecrets, folder_.path()), std::vector<std::string>{learned.string()});
  const auto mode = fs::status(learned).permissions();
  EXPECT_EQ(mode, fs::perms::owner_read | fs::perms::owner_write);
  // Folders are made as every program makes them.
  fs::create_directory(folder_.path() / "plain");
  EXPECT_EQ(fs::status(user.learned()).permissions(),
            fs::status(folder_.path() / "plain").permissions());
}

}  // namespace
}  // namespace tessarok::testing
