// A disk that does not answer delays no key, and nobody ends the program for it.

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <signal.h>
#include <string>

#include "desktops/freedesktop/SessionContact.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

namespace fs = std::filesystem;

class X11SlowStorage : public ::testing::Test {
 protected:
  [[nodiscard]] Tessarok::Setup setup() const {
    Tessarok::Setup setup;
    setup.home = home_.path();
    setup.environment = {{"LD_PRELOAD", TESSAROK_STALLS},
                         {"TESSAROK_STALL_UNDER", home_.path().string()},
                         {"TESSAROK_STALL_READS", TESSAROK_TEST_DATA},
                         {"TESSAROK_STALL_UNTIL", answers_.string()},
                         {"TESSAROK_STALL_LOST", lost_.string()},
                         {"TESSAROK_STALL_COUNT", waits_.string()}};
    return setup;
  }
  void answer() { writeFile(answers_, ""); }
  void stopAnswering() {
    fs::remove(answers_);
    fs::remove(waits_);
  }
  /// Whether a call waits for the disk.
  [[nodiscard]] bool isWaiting() const {
    return waitUntil([this] { return fs::exists(waits_); });
  }

  /// Types a line with the English layout on; what it is in the window.
  [[nodiscard]] std::string line(const std::string& keys) {
    server_.lockGroup(0);
    const auto before = window_.text();
    server_.type(keys + "\n");
    EXPECT_TRUE(waitUntil([&] {
      const auto text = window_.text();
      return text.size() > before.size() && text.ends_with('\n');
    })) << window_.text()
        << "\nbefore:\n"
        << before;
    return window_.text().substr(before.size());
  }

  /// With a disk that answers, and a first word put right.
  [[nodiscard]] std::unique_ptr<Tessarok> started() {
    answer();
    auto program = std::make_unique<Tessarok>(server_, setup());
    EXPECT_TRUE(program->says("correcting in every application")) << program->errors();
    EXPECT_TRUE(waitUntil([this] { return line("ghbdtn ") == "привет \n"; }));
    return program;
  }

  XServer server_;
  GtkEntry window_{server_};
  virtualdesktop::TemporaryDirectory home_;
  virtualdesktop::TemporaryDirectory outside_;
  fs::path answers_ = outside_.path() / "answers";
  fs::path waits_ = outside_.path() / "waits";
  fs::path lost_ = outside_.path() / "lost";
};

TEST_F(X11SlowStorage, AHomeFolderThatDoesNotAnswerAtTheStartDelaysNoKey) {
  const Tessarok program(server_, setup());
  ASSERT_TRUE(isWaiting());
  EXPECT_EQ(line("ghbdtn "), "ghbdtn \n");
  answer();
  EXPECT_TRUE(program.says("correcting in every application")) << program.errors();
  EXPECT_TRUE(waitUntil([this] { return line("ghbdtn ") == "привет \n"; }));
}

TEST_F(X11SlowStorage, AHomeFolderThatStopsAnsweringDelaysNoKey) {
  const auto program = started();
  const auto worker = program->worker();
  stopAnswering();
  // A tick asks for the lists.
  ASSERT_TRUE(isWaiting());
  // Longer than the watchdog lets a program hang.
  for (int lines = 0; lines < 20; ++lines)
    EXPECT_EQ(line("ghbdtn "), "привет \n");
  EXPECT_EQ(program->worker(), worker);
}

/// It notes the first start before it tells the person of it.
TEST_F(X11SlowStorage, ANoteOfTheFirstStartThatIsNotWrittenDelaysNoKeyAtTheEnd) {
  const PrivateBus bus;
  auto noteHangs = setup();
  noteHangs.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
  noteHangs.environment["TESSAROK_STALL_UNDER"] =
      home_.path() / ".local/share/Tessarok" / freedesktop::SessionContact::kWelcomedFile;
  const Tessarok program(server_, noteHangs);
  ASSERT_TRUE(isWaiting());
  EXPECT_TRUE(waitUntil([this] { return line("ghbdtn ") == "привет \n"; }));
  const auto worker = program.worker();
  program.sendToWorker(SIGTERM);
  // Keys of a line that is pressed faster than by hand may change places until then.
  EXPECT_TRUE(waitUntil([this] { return !server_.isKeyboardHeld(); }));
  EXPECT_EQ(line("ghbdtn "), "ghbdtn \n");
  // The disk is still waited for.
  EXPECT_EQ(program.worker(), worker);
  answer();
}

TEST_F(X11SlowStorage, WordDataThatMemoryHasLostAreNotWaitedFor) {
  const auto program = started();
  const auto worker = program->worker();
  stopAnswering();
  writeFile(lost_, "");
  // What was seen in memory is believed until the next tick.
  EXPECT_TRUE(waitUntil([this] { return line("ghbdtn ") == "ghbdtn \n"; }));
  EXPECT_TRUE(isWaiting());
  EXPECT_EQ(line("ghbdtn "), "ghbdtn \n");
  answer();
  EXPECT_TRUE(waitUntil([this] { return line("ghbdtn ") == "привет \n"; }));
  EXPECT_EQ(program->worker(), worker);
}

}  // namespace
}  // namespace tessarok::testing
