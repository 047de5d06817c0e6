#include <atomic>
#include <chrono>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <thread>

#include "desktops/terminal/ProgramNames.h"
#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::terminal {
namespace {

using namespace std::chrono_literals;

/// Folders that answer, or not yet.
class Folders {
 public:
  void add(const std::string& folder, std::vector<std::string> names) {
    names_[folder] = std::move(names);
  }
  void stall(const std::string& folder) { stalling_ = folder; }
  void answer() { answers_.set_value(); }

  ProgramNames::Reader reader() {
    return [this, answered = answers_.get_future().share()](const std::string& folder) {
      ++reads;
      if (folder == stalling_) answered.wait();
      return names_[folder];
    };
  }

  std::atomic<int> reads = 0;

 private:
  std::map<std::string, std::vector<std::string>> names_;
  std::string stalling_;
  std::promise<void> answers_;
};

/// Waits until a name is known.
bool comesToKnow(ProgramNames& programs, std::string_view name) {
  for (int i = 0; i < 3000 && !programs.contains(name); ++i)
    std::this_thread::sleep_for(10ms);
  return programs.contains(name);
}

TEST(ProgramNames, OfAllFoldersAreKnownWhenTheyHaveBeenRead) {
  Folders folders;
  folders.add("/bin", {"ls", "cat"});
  folders.add("/usr/bin", {"entr"});
  ProgramNames programs({"/bin", "/usr/bin"}, folders.reader());
  EXPECT_FALSE(programs.contains("ls"));
  programs.refresh(0);
  EXPECT_TRUE(comesToKnow(programs, "ls"));
  EXPECT_TRUE(comesToKnow(programs, "cat"));
  EXPECT_TRUE(comesToKnow(programs, "entr"));
  EXPECT_FALSE(programs.contains("l"));
  EXPECT_FALSE(programs.contains("lss"));
}

TEST(ProgramNames, AreReadAnewAfterAWhile) {
  Folders folders;
  folders.add("/bin", {"ls"});
  ProgramNames programs({"/bin"}, folders.reader());
  programs.refresh(0);
  ASSERT_TRUE(comesToKnow(programs, "ls"));
  folders.add("/bin", {"ls", "wtype"});
  programs.refresh(1);
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(folders.reads, 1);
  programs.refresh(100);
  EXPECT_TRUE(comesToKnow(programs, "wtype"));
}

TEST(ProgramNames, AFolderThatDoesNotAnswerHoldsUpNobody) {
  Folders folders;
  folders.add("/net/bin", {"far"});
  folders.add("/bin", {"ls"});
  folders.stall("/net/bin");
  ProgramNames programs({"/net/bin", "/bin"}, folders.reader());
  programs.refresh(0);
  // By the time that the next line begins it is seen to be stuck.
  programs.refresh(1);
  EXPECT_TRUE(comesToKnow(programs, "ls"));
  EXPECT_FALSE(programs.contains("far"));
  // It is not asked again and again.
  for (int second = 2; second < 1000; ++second)
    programs.refresh(second);
  folders.answer();
  EXPECT_TRUE(comesToKnow(programs, "far"));
}

TEST(ProgramNames, OfARealFolderAreItsFiles) {
  const virtualdesktop::TemporaryDirectory folder;
  std::ofstream(folder.path() / "rfgbcnf") << "";
  ProgramNames programs({folder.path().string(), "/nowhere"});
  programs.refresh(0);
  EXPECT_TRUE(comesToKnow(programs, "rfgbcnf"));
}

}  // namespace
}  // namespace tessarok::terminal
