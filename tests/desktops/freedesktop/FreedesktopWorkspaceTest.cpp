// Opening files and settings in other programs, and saying what could not be opened.

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/Notifications.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/SilentBus.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

constexpr const char* kSettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

/// A desktop whose only programs are those that the test adds.
class Workspace : public ::testing::Test {
 protected:
  void SetUp() override {
    ::setenv("PATH", programs_.path().c_str(), 1);
    ::unsetenv("XDG_CURRENT_DESKTOP");
  }
  void addProgram(const std::string& name, const std::string& script) {
    writeFile(programs_.path() / name, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(programs_.path() / name, std::filesystem::perms::owner_all);
  }
  /// Adds a program that writes its arguments down.
  void addWitness(const std::string& name) { addProgram(name, "echo \"$@\" > " + file("seen")); }
  std::string file(const std::string& name) { return (programs_.path() / name).string(); }
  bool waitForEnd() {
    return desktop_.runLoop().until([&] { return desktop_.programs().running() == 0; });
  }

  virtualdesktop::TemporaryDirectory programs_;
  PrivateBus bus_;
  BusDesktop desktop_{bus_.address()};
};

TEST_F(Workspace, OpensAFileAndLeavesNoZombie) {
  addWitness("xdg-open");
  desktop_.workspace().openFile("/home/someone/my words.txt");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(readFile(file("seen")), "/home/someone/my words.txt\n");
  // The bus daemon is the test's only other child.
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), 0);
}

TEST_F(Workspace, OpensAnAddress) {
  addWitness("xdg-open");
  desktop_.workspace().openUrl("https://example.org/");
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(readFile(file("seen")), "https://example.org/\n");
}

TEST_F(Workspace, StartsProgramsInASessionOfTheirOwn) {
  addProgram("xdg-open",
             "read -r _ _ _ _ _ session _ < /proc/$$/stat; echo $session $$ > " + file("seen"));
  desktop_.workspace().openFile("/file");
  ASSERT_TRUE(waitForEnd());
  const auto seen = readFile(file("seen"));
  const auto space = seen.find(' ');
  ASSERT_NE(space, std::string::npos);
  EXPECT_EQ(seen.substr(0, space) + "\n", seen.substr(space + 1));
}

TEST_F(Workspace, SaysWhenNoProgramIsSetUpForAFile) {
  Notifications notifications(desktop_.runLoop(), bus_.address());
  addProgram("xdg-open", "exit 3");
  desktop_.workspace().openFile("/words.txt");
  EXPECT_EQ(notifications.next(), "Cannot open /words.txt|no program is set up for it");
}

TEST_F(Workspace, SaysWhenFilesCannotBeOpenedAtAll) {
  Notifications notifications(desktop_.runLoop(), bus_.address());
  desktop_.workspace().openFile("/words.txt");
  EXPECT_EQ(notifications.next(), "Cannot open /words.txt|xdg-open: No such file or directory");
}

TEST_F(Workspace, SaysItInTheLogWhereNothingShowsNotifications) {
  desktop_.workspace().openFile("/words.txt");
  std::vector<std::string> messages;
  ASSERT_TRUE(desktop_.runLoop().until([&] {
    messages = desktop_.systemLog().take();
    return !messages.empty();
  }));
  EXPECT_EQ(messages, std::vector<std::string>{
                          "Tessarok: Cannot open /words.txt: xdg-open: No such file or directory"});
}

TEST_F(Workspace, SaysItInTheLogWhenTheBusNeverAnswers) {
  const SilentBus silent;
  BusDesktop desktop(silent.address());
  desktop.workspace().openFile("/words.txt");
  desktop.base().wait(freedesktop::Bus::kPatience / 1e6);
  desktop.base().wait(freedesktop::Bus::kConnectPatience);
  std::vector<std::string> messages;
  ASSERT_TRUE(desktop.runLoop().until([&] {
    messages = desktop.systemLog().take();
    return !messages.empty();
  }));
  EXPECT_EQ(messages, std::vector<std::string>{
                          "Tessarok: Cannot open /words.txt: xdg-open: No such file or directory"});
}

TEST_F(Workspace, OpensTheSettingsOfTheDesktopInUse) {
  ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
  addWitness("gnome-control-center");
  addProgram("xfce4-keyboard-settings", "exit 1");
  desktop_.workspace().openUrl(kSettings);
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(readFile(file("seen")), "keyboard\n");
}

TEST_F(Workspace, OpensWhateverSettingsThereAreWithoutADesktop) {
  addWitness("lxqt-config-input");
  desktop_.workspace().openUrl(kSettings);
  ASSERT_TRUE(waitForEnd());
  EXPECT_EQ(readFile(file("seen")), "\n");
}

TEST_F(Workspace, ExplainsWhatToDoWithoutSettings) {
  Notifications notifications(desktop_.runLoop(), bus_.address());
  desktop_.workspace().openUrl(kSettings);
  EXPECT_TRUE(notifications.next().starts_with("No keyboard settings found|Tessarok needs no"));
}

}  // namespace
}  // namespace tessarok::testing
