// What is typed on a display is written nowhere but into the learned lists.

#include <cstdlib>
#include <gtest/gtest.h>
#include <signal.h>

#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/SecretSearch.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

TEST(X11Privacy, NothingTypedIsKept) {
  const Secrets secrets = {std::string("vjc") + "rdf", std::string("мос") + "ква",
                           std::string("zqxv") + "jkw"};
  const virtualdesktop::TemporaryDirectory folder;
  XServer server;
  GtkEntry window(server);
  ::setenv("TESSAROK_DEBUG", "1", 1);
  ::setenv("TESSAROK_DEBUG_PATH", (folder.path() / "debug.log").c_str(), 1);
  ::setenv("TMPDIR", folder.path().c_str(), 1);
  Tessarok tessarok(server);
  server.type(secrets[0] + " ");
  ASSERT_TRUE(window.shows(secrets[1] + " ")) << window.text();
  server.lockGroup(0);
  server.type(secrets[2] + " ");
  ASSERT_TRUE(window.shows(secrets[1] + " " + secrets[2] + " ")) << window.text();
  EXPECT_EQ(processesWith(secrets), std::vector<std::string>());
  tessarok.send(SIGTERM);
  EXPECT_EQ(tessarok.exitStatus(), 0);
  EXPECT_NE(readFile(folder.path() / "debug.log").find("eval count=6"), std::string::npos);
  EXPECT_EQ(filesWith(secrets, tessarok.home()), std::vector<std::string>());
  EXPECT_FALSE(testing::holdsSecret(folder.path() / "debug.log", secrets));
}

}  // namespace
}  // namespace tessarok::testing
