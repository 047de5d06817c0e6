// What is typed on the virtual desktop leaves nothing behind but what is learned.

#include <cstdlib>
#include <gtest/gtest.h>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SecretSearch.h"

namespace tessarok {
namespace {

using testing::filesWith;
using testing::runProgram;

const testing::Secrets kSecrets = {std::string("vjc") + "rdf", std::string("мос") + "ква",
                                   std::string("zqxv") + "jkw"};

TEST(Privacy, TypingLeavesNoFile) {
  const virtualdesktop::TemporaryDirectory folder;
  ::setenv("HOME", folder.path().c_str(), 1);
  ::setenv("TMPDIR", folder.path().c_str(), 1);
  ::unsetenv("XDG_DATA_HOME");
  const auto run = runProgram({"--resources", TESSAROK_TEST_DATA, "type"},
                              kSecrets[0] + " " + kSecrets[2] + " ");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find(kSecrets[1]), std::string::npos) << run.out;
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Privacy, OnlyARejectedWordIsKept) {
  const virtualdesktop::TemporaryDirectory folder;
  const auto keys = [](const std::string& text) { return R"({"keys": ")" + text + "\"}\n"; };
  const std::string undo = "{\"down\": {\"code\": 49, \"mods\": [\"option\"]}}\n";
  const auto run =
      runProgram({"--resources", TESSAROK_TEST_DATA, "replay", "--home", folder.path()},
                 keys("ghbdtn ") + undo + keys(kSecrets[0] + " ") + keys(kSecrets[2] + " ") +
                     "{\"quit\": true}\n");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(filesWith(kSecrets, folder.path()), std::vector<std::string>());
  EXPECT_EQ(filesWith({"ghbdtn"}, folder.path()).size(), 1u);
}

}  // namespace
}  // namespace tessarok
