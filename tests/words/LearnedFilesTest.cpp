// Copies of the program in one home: what each has learned gets into the files, whoever ends when.

#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <optional>
#include <sys/stat.h>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "words/LearnedFiles.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using testing::FakeDesktop;
using testing::readFile;
using testing::writeFile;
using Company = LearnedFiles::Company;
using Recovery = LearnedFiles::Recovery;
using Log = std::vector<std::string>;

class LearnedFilesTest : public ::testing::Test {
 protected:
  LearnedFilesTest() { fs::create_directories(desktop.folder()); }

  /// One of many copies, started.
  [[nodiscard]] static std::unique_ptr<LearnedFiles> copy() {
    auto made = std::make_unique<LearnedFiles>();
    made->join(Company::many);
    made->load(Recovery::onDisk);
    return made;
  }
  static void reject(LearnedFiles& copy, const std::string& word, int times = 1) {
    for (; times > 0; --times)
      copy.reject(word);
  }
  [[nodiscard]] fs::path file(const std::string& name) const { return desktop.folder() / name; }
  [[nodiscard]] std::string rejects() const {
    return fs::exists(file("rejects.txt")) ? readFile(file("rejects.txt")) : "";
  }
  [[nodiscard]] std::string ignored() const {
    return fs::exists(file("ignored.txt")) ? readFile(file("ignored.txt")) : "";
  }
  /// Everything in the folder but the lists themselves and the locks.
  [[nodiscard]] Log extraFiles() const {
    Log names;
    for (const auto& entry : fs::directory_iterator(desktop.folder())) {
      const auto name = entry.path().filename().string();
      if (name != "rejects.txt" && name != "ignored.txt" && !name.ends_with(".lock"))
        names.push_back(name);
    }
    return names;
  }

  FakeDesktop desktop;
};

TEST_F(LearnedFilesTest, TheWriterCountsWhatOthersLearn) {
  const auto first = copy();
  const auto second = copy();
  reject(*first, "слово");
  reject(*second, "слово");
  reject(*second, "другое");
  EXPECT_EQ(rejects(), "слово\t1\n");
  EXPECT_EQ(extraFiles().size(), 2u);
  EXPECT_FALSE(second->tick());
  EXPECT_FALSE(first->tick());
  EXPECT_EQ(rejects(), "другое\t1\nслово\t2\n");
  EXPECT_TRUE(extraFiles().empty());
  reject(*second, "слово");
  EXPECT_TRUE(first->tick());
  EXPECT_EQ(rejects(), "другое\t1\nслово\t3\n");
  EXPECT_EQ(ignored(), "слово\n");
  EXPECT_EQ(desktop.systemLog().take(), Log{});
}

TEST_F(LearnedFilesTest, TheNextOneWritesWhenTheWriterIsKilled) {
  auto first = copy();
  const auto second = copy();
  const auto third = copy();
  reject(*first, "раз");
  reject(*second, "два");
  reject(*third, "три", 3);
  first.reset();
  EXPECT_TRUE(second->tick());
  EXPECT_EQ(rejects(), "два\t1\nраз\t1\nтри\t3\n");
  EXPECT_EQ(ignored(), "три\n");
  EXPECT_TRUE(second->lists().words().contains("три"));
  third->tick();
  reject(*third, "раз");
  second->tick();
  EXPECT_EQ(rejects(), "два\t1\nраз\t2\nтри\t3\n");
  EXPECT_TRUE(extraFiles().empty());
}

TEST_F(LearnedFilesTest, WhoStartsFirstAfterAllOthersWereKilledCountsWhatTheyHandedOver) {
  {
    const auto first = copy();
    const auto second = copy();
    reject(*second, "слово", 2);
  }
  const auto next = copy();
  EXPECT_EQ(next->lists().counts(), (LearnedLists::Counts{{"слово", 2}}));
  EXPECT_EQ(rejects(), "слово\t2\n");
  EXPECT_TRUE(extraFiles().empty());
}

TEST_F(LearnedFilesTest, TheLastToLeaveCountsWhatIsLeft) {
  const auto first = copy();
  const auto second = copy();
  reject(*second, "слово");
  first->leave();
  second->leave();
  EXPECT_EQ(rejects(), "слово\t1\n");
  EXPECT_TRUE(extraFiles().empty());
}

TEST_F(LearnedFilesTest, WhatIsForgottenGoesFromTheFilesAndEveryCopy) {
  const auto writer = copy();
  const auto guest = copy();
  reject(*writer, "слово", 3);
  reject(*guest, "слово");
  reject(*guest, "другое");
  EXPECT_FALSE(copy()->forget({"слово", "другое"}));
  writer->tick();
  EXPECT_EQ(rejects(), "\n");
  EXPECT_EQ(ignored(), "\n");
  EXPECT_TRUE(guest->tick());
  for (auto* one : {writer.get(), guest.get()}) {
    EXPECT_EQ(one->takeForgotten(), (WordSet{"другое", "слово"}));
    EXPECT_TRUE(one->takeForgotten().empty());
    EXPECT_TRUE(one->lists().counts().empty());
  }
  // It is learned anew like any other.
  reject(*guest, "слово");
  writer->tick();
  EXPECT_EQ(rejects(), "слово\t1\n");
  for (int ticks = 0; ticks < 6; ++ticks)
    writer->tick();
  EXPECT_EQ(rejects(), "слово\t1\n");
  EXPECT_TRUE(extraFiles().empty());
}

TEST_F(LearnedFilesTest, WhereNoOtherCopyRunsWordsAreForgottenAtOnce) {
  writeFile(file("ignored.txt"), "другое\nслово\n");
  writeFile(file("rejects.txt"), "слово\t3\nтретье\t2\n");
  EXPECT_FALSE(copy()->forget({"слово", "никакое"}));
  EXPECT_EQ(ignored(), "другое\n");
  EXPECT_EQ(rejects(), "третье\t2\n");
  EXPECT_TRUE(extraFiles().empty());
}

TEST_F(LearnedFilesTest, WhoTakesOverDoesNotBringBackWhatWasForgottenBefore) {
  writeFile(file("ignored.txt"), "другое\nслово\n");
  auto writer = copy();
  const auto guest = copy();
  reject(*guest, "третье", 3);
  writer->leave();
  // Before the guest has seen that nobody writes any more.
  auto asked = copy();
  EXPECT_FALSE(asked->forget({"слово"}));
  asked->leave();
  EXPECT_EQ(ignored(), "другое\nтретье\n");
  EXPECT_TRUE(guest->tick());
  EXPECT_EQ(ignored(), "другое\nтретье\n");
  EXPECT_EQ(guest->lists().words(), (WordSet{"другое", "третье"}));
  EXPECT_EQ(guest->takeForgotten(), WordSet{"слово"});
}

TEST_F(LearnedFilesTest, ARequestToForgetThatNobodyHasSeenIsObeyedByTheNextCopy) {
  {
    const auto writer = copy();
    reject(*writer, "слово", 3);
    EXPECT_FALSE(copy()->forget({"слово"}));
  }
  const auto next = copy();
  next->tick();
  EXPECT_EQ(ignored(), "\n");
  EXPECT_EQ(rejects(), "\n");
}

TEST_F(LearnedFilesTest, WhatOnlyIsNamedLikeARequestToForgetStays) {
  const auto writer = copy();
  reject(*writer, "слово");
  const std::string name = ".forget-0123456789abcdef.txt";
  writeFile(file(name), "слово\n");
  for (int ticks = 0; ticks < 10; ++ticks)
    writer->tick();
  EXPECT_EQ(rejects(), "слово\t1\n");
  EXPECT_EQ(extraFiles(), Log{name});
}

TEST_F(LearnedFilesTest, ListsThatCannotBeWrittenForgetNothing) {
  writeFile(file("ignored.txt"), "слово\n");
  desktop.files().failsNextWrite = true;
  EXPECT_EQ(copy()->forget({"слово"}).reason(), "rejects.txt: the disk is full");
  // Who asked says it.
  EXPECT_EQ(desktop.systemLog().take(), Log{});
}

TEST_F(LearnedFilesTest, ACopyWithoutCompanyOverwritesWhatWasEditedByHand) {
  const auto only = copy();
  reject(*only, "слово");
  writeFile(file("rejects.txt"), "чужое\t2\n");
  writeFile(file("ignored.txt"), "чужое\n");
  only->tick();
  reject(*only, "слово");
  EXPECT_EQ(rejects(), "слово\t2\n");
  EXPECT_EQ(ignored(), "чужое\n");
  EXPECT_FALSE(only->lists().words().contains("чужое"));
}

TEST_F(LearnedFilesTest, WhoTakesOverLearnsWhatTheOtherHasWritten) {
  auto first = copy();
  const auto second = copy();
  reject(*first, "раз", 3);
  reject(*first, "два", 2);
  EXPECT_FALSE(second->lists().words().contains("раз"));
  first.reset();
  EXPECT_TRUE(second->tick());
  EXPECT_TRUE(second->lists().words().contains("раз"));
  reject(*second, "два");
  EXPECT_EQ(ignored(), "два\nраз\n");
}

TEST_F(LearnedFilesTest, AFullDiskLosesNothing) {
  auto first = copy();
  const auto second = copy();
  desktop.files().failsNextWrite = true;
  reject(*second, "слово");
  EXPECT_TRUE(extraFiles().empty());
  EXPECT_EQ(desktop.systemLog().take(),
            Log{"Tessarok: could not save what was learned: the disk is full"});
  desktop.files().failsNextWrite = true;
  second->tick();
  EXPECT_EQ(desktop.systemLog().take(), Log{}) << "it is said once";
  second->tick();
  EXPECT_EQ(extraFiles().size(), 1u);
  // Now the writer's disk is full, twice.
  for (int attempt = 1; attempt <= 2; ++attempt) {
    desktop.files().failsNextWrite = true;
    first->tick();
    EXPECT_EQ(rejects(), "");
    EXPECT_EQ(extraFiles().size(), 1u);
  }
  EXPECT_EQ(desktop.systemLog().take(),
            Log{"Tessarok: could not save rejects.txt: the disk is full"});
  first->tick();
  EXPECT_EQ(rejects(), "слово\t1\n");
  EXPECT_TRUE(extraFiles().empty());
}

TEST_F(LearnedFilesTest, WhatACopyCouldNotHandOverIsWrittenWhenItTakesOver) {
  auto first = copy();
  const auto second = copy();
  desktop.files().failsNextWrite = true;
  reject(*second, "слово");
  first.reset();
  second->tick();
  EXPECT_EQ(rejects(), "слово\t1\n");
}

TEST_F(LearnedFilesTest, AFileThatCannotBeReadIsNeverWrittenAndNothingIsTakenForIt) {
  writeFile(file("rejects.txt"), "сло\xff\t1\n");
  const auto first = copy();
  const auto second = copy();
  reject(*second, "слово", 3);
  first->tick();
  EXPECT_EQ(rejects(), "сло\xff\t1\n");
  EXPECT_EQ(ignored(), "");
  // It waits for a run in which the file can be read.
  EXPECT_EQ(extraFiles().size(), 3u);
  EXPECT_EQ(desktop.systemLog().take().size(), 2u) << "each copy says it once";
}

TEST_F(LearnedFilesTest, AnUnreadableFileMetAtTheTakeoverKeepsWhatIsKnown) {
  writeFile(file("ignored.txt"), "старое\n");
  auto first = copy();
  const auto second = copy();
  reject(*second, "слово");
  first.reset();
  writeFile(file("ignored.txt"), "сло\xff\n");
  second->tick();
  EXPECT_EQ(ignored(), "сло\xff\n");
  EXPECT_TRUE(second->lists().words().contains("старое"));
  reject(*second, "новое");
  EXPECT_EQ(rejects(), "новое\t1\n");
}

TEST_F(LearnedFilesTest, WhatOthersPutUnderSuchANameIsLeftAlone) {
  const std::vector<std::string> names = {".learned-0123456789abcdef.txt", ".learned-notes.txt",
                                          ".learned-0123456789ABCDEF.txt"};
  for (const auto& name : names)
    writeFile(file(name), "слово\t3\n");
  ASSERT_EQ(::mkfifo(file(".learned-0000000000000000.txt").c_str(), 0600), 0);
  const auto only = copy();
  only->tick();
  only->leave();
  EXPECT_EQ(extraFiles().size(), names.size() + 1);
  EXPECT_EQ(ignored(), "");
}

TEST_F(LearnedFilesTest, CountsBeyondAllBoundsCountAsThree) {
  writeFile(file(".learned-0123456789abcdef.txt"),
            "# Tessarok: learned, to be counted\nслово\t9223372036854775807\n"
            "слово\t9223372036854775807\nдругое\t-1\nи\n");
  const auto only = copy();
  EXPECT_EQ(rejects(), "слово\t3\n");
  EXPECT_EQ(ignored(), "слово\n");
}

TEST_F(LearnedFilesTest, ANewKindOfWriterWaitsForTheOldOne) {
  auto terminal = copy();
  LearnedFiles desktopCopy;
  desktopCopy.join(Company::onlyOne);
  desktopCopy.load(Recovery::onDisk);
  desktopCopy.reject("слово");
  EXPECT_EQ(rejects(), "");
  terminal.reset();
  desktopCopy.tick();
  EXPECT_EQ(rejects(), "слово\t1\n");
}

/// Thrown in place of a call: the copy that makes it is killed there.
struct Killed {};

/// The desktop's files, but that a copy can be killed before or after any change that it makes.
class DeadlyFiles final : public posix::PosixFiles {
 public:
  using PosixFiles::PosixFiles;

  platform::Failure writeAtomically(const fs::path& file, std::string_view text) override {
    step();
    auto failure = PosixFiles::writeAtomically(file, text);
    step();
    return failure;
  }
  bool remove(const fs::path& file) override {
    step();
    const bool isGone = PosixFiles::remove(file);
    step();
    return isGone;
  }

  /// How many more steps may be made; absent for any number.
  std::optional<int> left;
  int steps = 0;

 private:
  void step() {
    ++steps;
    if (left && (*left)-- == 0) throw Killed();
  }
};

class DeadlyDesktop final : public testing::PartlyVirtualDesktop {
 public:
  DeadlyDesktop() { platform::setDesktop(*this); }
  DeadlyFiles& files() override { return files_; }
  virtualdesktop::VirtualDesktop& base() override { return base_; }

 private:
  virtualdesktop::TemporaryDirectory home_;
  virtualdesktop::VirtualDesktop base_{home_.path(), std::nullopt};
  DeadlyFiles files_{home_.path(), posix::PosixFiles::defaultDataHome(home_.path())};
};

/// What a writer does that others have handed over to, killed at step `at`; the lists that the next
/// one finds. The number of steps is left in `steps`.
LearnedLists countedInSpiteOfAKill(int at, int& steps) {
  DeadlyDesktop desktop;
  const auto start = [] {
    auto made = std::make_unique<LearnedFiles>();
    made->join(Company::many);
    made->load(Recovery::onDisk);
    return made;
  };
  auto writer = start();
  const auto other = start();
  writer->reject("раз");
  other->reject("раз");
  other->reject("два");
  for (int i = 0; i < 3; ++i)
    other->reject("три");
  desktop.files().steps = 0;
  desktop.files().left = at;
  try {
    writer->tick();
  } catch (const Killed&) {
    // Nothing is put in order.
  }
  desktop.files().left.reset();
  steps = desktop.files().steps;
  writer.reset();
  other->tick();
  const auto next = start();
  return next->lists();
}

TEST(LearnedFiles, AKillAtAnyMomentLosesNothingAndCountsNothingTwice) {
  int steps = 0;
  static_cast<void>(countedInSpiteOfAKill(std::numeric_limits<int>::max(), steps));
  // Two lists and the receipt are written, four files and the receipt removed.
  ASSERT_GE(steps, 16);
  for (int at = 0; at < steps; ++at) {
    int made = 0;
    const auto lists = countedInSpiteOfAKill(at, made);
    EXPECT_EQ(made, at + 1);
    EXPECT_EQ(lists.words(), WordSet{"три"}) << at;
    EXPECT_EQ(lists.counts().at("раз"), 2) << at;
    EXPECT_EQ(lists.counts().at("два"), 1) << at;
  }
}

}  // namespace
}  // namespace tessarok
