// The program as a session starts it at login, where it may be of no use.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Subprocess.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

using Variables = std::map<std::string, std::string>;

class X11SessionStart : public ::testing::Test {
 protected:
  X11SessionStart() {
    std::filesystem::create_directories(prefix() / "bin");
    std::filesystem::copy_file(TESSAROK_PROGRAM, prefix() / "bin" / "tessarok");
  }

  /// The program of `prefix`, started by a session with these variables besides the display.
  [[nodiscard]] Subprocess start(const Variables& variables, const std::filesystem::path& home) {
    Subprocess::Setup setup;
    setup.errors = errorFile();
    setup.environment = {{"DISPLAY", server_.name()},
                         {"HOME", home.string()},
                         {"XDG_DATA_HOME", ""},
                         {"XDG_DATA_DIRS", folder_.path().string()},
                         {"XDG_CONFIG_HOME", ""},
                         {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"},
                         {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"},
                         {"WAYLAND_DISPLAY", ""},
                         {"XDG_SESSION_TYPE", ""},
                         {"XMODIFIERS", ""},
                         {"GTK_IM_MODULE", ""},
                         {"QT_IM_MODULE", ""}};
    for (const auto& [name, value] : variables)
      setup.environment[name] = value;
    return {{(prefix() / "bin" / "tessarok").string(), "--resources", TESSAROK_TEST_DATA, "x11",
             "--autostart"},
            "tessarok",
            setup};
  }

  void expectCorrection(const Variables& variables) {
    auto program = start(variables, folder_.path());
    EXPECT_TRUE(waitUntil([this] { return server_.isKeyboardHeld(); })) << readFile(errorFile());
    program.send(SIGTERM);
    EXPECT_EQ(program.exitStatus(), 0);
  }

  void expectSilence(const Variables& variables) {
    auto program = start(variables, folder_.path());
    EXPECT_EQ(program.exitStatus(), 0);
    EXPECT_EQ(readFile(errorFile()), "");
  }

  void installAddon() {
    writeFile(prefix() / "share" / "fcitx5" / "addon" / "tessarok.conf", "[Addon]\n");
  }

  [[nodiscard]] std::filesystem::path prefix() const { return folder_.path() / "prefix"; }
  [[nodiscard]] std::filesystem::path errorFile() const { return folder_.path() / "errors"; }

  virtualdesktop::TemporaryDirectory folder_;
  XServer server_;
};

TEST_F(X11SessionStart, ADisplayIsCorrected) {
  expectCorrection({});
  expectCorrection({{"XDG_SESSION_TYPE", "x11"}});
}

TEST_F(X11SessionStart, AWaylandSessionIsLeftAlone) {
  expectSilence({{"XDG_SESSION_TYPE", "wayland"}});
  expectSilence({{"WAYLAND_DISPLAY", "wayland-0"}});
}

/// There the display often has one layout only, and the lock would keep the addon from its work.
TEST_F(X11SessionStart, WhereFcitxHasTheAddonItIsLeftToThat) {
  installAddon();
  for (const Variables& variables :
       {Variables{{"XMODIFIERS", "@im=fcitx"}}, Variables{{"GTK_IM_MODULE", "fcitx"}},
        Variables{{"QT_IM_MODULE", "fcitx5"}}}) {
    SCOPED_TRACE(variables.begin()->first);
    expectSilence(variables);
  }
  expectCorrection({{"XMODIFIERS", "@im=ibus"}});
}

TEST_F(X11SessionStart, FcitxWithoutTheAddonIsNoReason) {
  expectCorrection({{"XMODIFIERS", "@im=fcitx"}, {"GTK_IM_MODULE", "fcitx"}});
}

TEST_F(X11SessionStart, ASecondCopyEndsWithoutAWord) {
  const Tessarok first(server_);
  auto second = start({}, first.home());
  EXPECT_EQ(second.exitStatus(), 0);
  EXPECT_EQ(readFile(errorFile()), "");
}

}  // namespace
}  // namespace tessarok::testing
