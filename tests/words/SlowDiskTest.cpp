// A disk that does not answer: keys go on, and no word is put right that may be on a list.

#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/HeldQueues.h"
#include "tests/support/TestFiles.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok {
namespace {

using testing::readFile;
using testing::writeFile;

class SlowDisk : public ::testing::Test {
 protected:
  SlowDisk() {
    desktop.addAllTestData();
    desktop.replaced.serialQueues = &queues;
  }
  ~SlowDisk() override {
    if (delegate) delegate->applicationWillTerminate();
    queues.letGo();
  }
  void launch() {
    delegate = std::make_shared<AppDelegate>();
    delegate->applicationDidFinishLaunching();
  }
  [[nodiscard]] static bool isPutRight(std::string_view word) {
    return Detector::decide(word, 0, 0).has_value();
  }

  testing::HeldQueues queues;
  testing::FakeDesktop desktop;
  std::shared_ptr<AppDelegate> delegate;
};

TEST_F(SlowDisk, NoWordIsPutRightBeforeTheListsAreKnown) {
  writeFile(UserDict::fileURL(), "ghbdtn\n");
  writeFile(desktop.folder() / "ignored.txt", "vjcrdf\n");
  launch();
  EXPECT_TRUE(delegate->tapRunning());
  for (const auto* word : {"ghbdtn", "vjcrdf", "ckjdj"})
    EXPECT_FALSE(isPutRight(word)) << word;
  EXPECT_EQ(desktop.files().reads["dictionary.txt"], 0);
  queues.letGo();
  EXPECT_FALSE(isPutRight("ghbdtn"));
  EXPECT_FALSE(isPutRight("vjcrdf"));
  EXPECT_TRUE(isPutRight("ckjdj"));
}

TEST_F(SlowDisk, TheWordsStayAsTheyWereWhileAChangedFileIsRead) {
  writeFile(UserDict::fileURL(), "ghbdtn\n");
  launch();
  queues.letGo();
  std::filesystem::remove(UserDict::fileURL());
  writeFile(UserDict::fileURL(), "ckjdj\nvjcrdf\n");
  desktop.runLoop().advance(2);
  const auto jobs = queues.jobs();
  desktop.runLoop().advance(60);
  // A disk that has not answered is not asked again.
  EXPECT_EQ(queues.jobs(), jobs);
  EXPECT_FALSE(isPutRight("ghbdtn"));
  EXPECT_TRUE(isPutRight("ckjdj"));
  queues.letGo();
  EXPECT_TRUE(isPutRight("ghbdtn"));
  EXPECT_FALSE(isPutRight("ckjdj"));
}

TEST_F(SlowDisk, NoWordIsPutRightWhileADictionaryHasToBeReadAgain) {
  launch();
  queues.letGo();
  EXPECT_TRUE(isPutRight("ghbdtn"));
  desktop.files().mapsAreAtHand = false;
  for (const auto* word : {"ghbdtn", "ghbdtn.", "руддщ", "hello", "xyzzyghbdtn"})
    EXPECT_FALSE(isPutRight(word)) << word;
  // By its short words alone it could be converted.
  EXPECT_FALSE(Detector::isShortEnCandidate("рш"));
  desktop.files().mapsAreAtHand = true;
  EXPECT_TRUE(Detector::isShortEnCandidate("рш"));
  EXPECT_TRUE(isPutRight("ghbdtn"));
}

TEST_F(SlowDisk, AWordThatWasRejectedIsLeftAloneAtOnce) {
  launch();
  queues.letGo();
  for (int rejection = 0; rejection < 3; ++rejection)
    IgnoreList::recordRejection("ghbdtn");
  IgnoreList::add("ckjdj");
  EXPECT_FALSE(isPutRight("ghbdtn"));
  EXPECT_FALSE(isPutRight("ckjdj"));
  EXPECT_FALSE(std::filesystem::exists(desktop.folder() / "ignored.txt"));
  queues.letGo();
  EXPECT_EQ(readFile(desktop.folder() / "ignored.txt"), "ckjdj\nghbdtn\n");
  EXPECT_EQ(readFile(desktop.folder() / "rejects.txt"), "ghbdtn\t3\n");
}

TEST_F(SlowDisk, TheDictionaryIsOpenedWhenItIsThere) {
  launch();
  queues.letGo();
  std::filesystem::remove(UserDict::fileURL());
  EXPECT_TRUE(desktop.base().statusBar().choose("Open User Dictionary…"));
  desktop.base().endTurn();
  EXPECT_TRUE(desktop.workspace().opened.empty());
  queues.letGo();
  desktop.base().endTurn();
  EXPECT_EQ(desktop.workspace().opened, std::vector{UserDict::fileURL().string()});
  EXPECT_TRUE(std::filesystem::exists(UserDict::fileURL()));
}

}  // namespace
}  // namespace tessarok
