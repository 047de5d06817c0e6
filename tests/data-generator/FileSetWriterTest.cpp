#include <sys/stat.h>

#include "FileSetWriter.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

using Names = std::vector<std::string>;

TEST(FileSetWriter, CreatesTheDirectoryAndReplacesTheFiles) {
  const TemporaryDirectory home;
  const auto directory = home.path() / "deep" / "data";
  writeFile(directory / "a.txt", "old");
  {
    FileSetWriter writer(directory);
    writer.stage("a.txt", "new");
    writer.stage("b.txt", "more");
    writer.commit();
  }
  EXPECT_EQ(readFile(directory / "a.txt"), "new");
  EXPECT_EQ(readFile(directory / "b.txt"), "more");
  EXPECT_EQ(namesIn(directory), (Names{"a.txt", "b.txt"})) << "nothing temporary stays";
}

TEST(FileSetWriter, WritesFilesThatEverybodyMayRead) {
  const TemporaryDirectory home;
  FileSetWriter writer(home.path());
  writer.stage("a.txt", "new");
  writer.commit();
  struct stat status {};
  ASSERT_EQ(stat((home.path() / "a.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST(FileSetWriter, ChangesNothingBeforeTheCommit) {
  const TemporaryDirectory home;
  writeFile(home.path() / "a.txt", "old");
  {
    FileSetWriter writer(home.path());
    writer.stage("a.txt", "new");
    EXPECT_EQ(readFile(home.path() / "a.txt"), "old");
  }
  EXPECT_EQ(readFile(home.path() / "a.txt"), "old");
  EXPECT_EQ(namesIn(home.path()), Names{"a.txt"});
}

TEST(FileSetWriter, LeavesTheOldSetWhenOneFileCannotBeReplaced) {
  const TemporaryDirectory home;
  writeFile(home.path() / "a.txt", "old");
  writeFile(home.path() / "b.txt" / "inside", "a directory in the way");
  {
    FileSetWriter writer(home.path());
    writer.stage("a.txt", "new");
    writer.stage("b.txt", "new");
    EXPECT_THROW(writer.commit(), std::system_error);
  }
  EXPECT_EQ(readFile(home.path() / "a.txt"), "old");
  EXPECT_EQ(namesIn(home.path()), (Names{"a.txt", "b.txt"}));
}

TEST(FileSetWriter, RestoresTheFilesReplacedBeforeAFailedRename) {
  const TemporaryDirectory home;
  writeFile(home.path() / "a.txt", "old");
  {
    FileSetWriter writer(home.path());
    writer.stage("a.txt", "new");
    writer.stage("b.txt", "new");
    writer.stage("c.txt", "new");
    // Take the last staged file away, so that its rename fails after the others succeeded.
    for (const std::string& name : namesIn(home.path())) {
      if (name.starts_with(".c.txt.")) std::filesystem::remove(home.path() / name);
    }
    EXPECT_THROW(writer.commit(), std::system_error);
  }
  EXPECT_EQ(readFile(home.path() / "a.txt"), "old");
  EXPECT_EQ(namesIn(home.path()), Names{"a.txt"}) << "b.txt did not exist before";
}

TEST(FileSetWriter, FailsWhenTheDirectoryCannotBeMade) {
  const TemporaryDirectory home;
  writeFile(home.path() / "file", "");
  FileSetWriter writer(home.path() / "file");
  EXPECT_THROW(writer.stage("a.txt", "new"), std::system_error);
}

}  // namespace
}  // namespace tessarok::makedata::test
