// A disk that does not answer delays no key in Fcitx, which everything waits for that is typed.

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/fcitx5/X11Session.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

namespace fs = std::filesystem;

class Fcitx5SlowStorage : public ::testing::Test {
 protected:
  void stopAnswering() {
    fs::remove(answers_);
    fs::remove(waits_);
  }
  /// Whether a call waits for the disk.
  [[nodiscard]] bool isWaiting() const {
    return waitUntil([this] { return fs::exists(waits_); });
  }
  /// A word in the wrong layout, and one that is in the wrong layout when the first has been put
  /// right: after the line the layout is English either way.
  static constexpr const char* kKeys = "ghbdtn hello\n";
  static constexpr const char* kPutRight = "привет hello\n";

  /// Starts from the layout that the last correction has left.
  void typeUntilCorrected() {
    static_cast<void>(session_.typeUntilCorrected());
    EXPECT_EQ(line("hello\n"), "hello\n");
  }
  /// Types a line; what it has become.
  [[nodiscard]] std::string line(const char* keys = kKeys) {
    const auto before = session_.text();
    session_.hands().type(keys);
    EXPECT_TRUE(waitUntil([&] {
      const auto text = session_.text();
      return text.size() > before.size() && text.ends_with('\n');
    })) << session_.messages();
    return session_.text().substr(before.size());
  }

  virtualdesktop::TemporaryDirectory outside_;
  fs::path answers_ = outside_.path() / "answers";
  fs::path waits_ = outside_.path() / "waits";
  fs::path lost_ = outside_.path() / "lost";
  X11Session session_{
      std::map<std::string, std::string>{{"LD_PRELOAD", TESSAROK_STALLS},
                                         {"TESSAROK_STALL_UNDER", "data/Tessarok"},
                                         {"TESSAROK_STALL_READS", TESSAROK_TEST_DATA},
                                         {"TESSAROK_STALL_UNTIL", answers_.string()},
                                         {"TESSAROK_STALL_LOST", lost_.string()},
                                         {"TESSAROK_STALL_COUNT", waits_.string()}}};
};

TEST_F(Fcitx5SlowStorage, AHomeFolderThatDoesNotAnswerDelaysNoKey) {
  session_.openEntry(Session::Entry::text);
  // It has not answered once.
  static_cast<void>(session_.typeUntilShown());
  ASSERT_TRUE(isWaiting());
  EXPECT_EQ(line(), kKeys);
  writeFile(answers_, "");
  typeUntilCorrected();
  stopAnswering();
  // A tick asks for the lists.
  ASSERT_TRUE(isWaiting());
  for (int lines = 0; lines < 5; ++lines)
    EXPECT_EQ(line(), kPutRight);
  writeFile(answers_, "");
}

TEST_F(Fcitx5SlowStorage, WordDataThatMemoryHasLostAreNotWaitedFor) {
  writeFile(answers_, "");
  session_.openEntry(Session::Entry::text);
  typeUntilCorrected();
  stopAnswering();
  writeFile(lost_, "");
  // What was seen in memory is believed until the next tick. Should that come in the middle of a
  // line, its second word stays as typed, and the layout too.
  EXPECT_TRUE(waitUntil([this] { return line() != kPutRight; }));
  EXPECT_TRUE(isWaiting());
  EXPECT_NE(line(), kPutRight);
  writeFile(answers_, "");
  EXPECT_TRUE(waitUntil([this] { return line() == kPutRight; }));
}

}  // namespace
}  // namespace tessarok::testing
