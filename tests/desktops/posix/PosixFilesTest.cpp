#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

#include "desktops/posix/PosixFiles.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/TestFiles.h"

namespace tessarok::posix {
namespace {

namespace fs = std::filesystem;
using platform::Failure;
using platform::FileLockFailure;
using testing::readFile;
using testing::writeFile;

std::string errorText(int number) {
  return std::generic_category().message(number);
}

class PosixFilesTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator(folder))
      all.push_back(entry.path().filename());
    return all;
  }

  virtualdesktop::TemporaryDirectory directory;
  const fs::path& folder = directory.path();
  PosixFiles files{folder, folder / "data"};
};

mode_t modeOf(const fs::path& file) {
  struct stat status {};
  EXPECT_EQ(::stat(file.c_str(), &status), 0);
  return status.st_mode & 07777;
}

/// Runs `work` in a process of its own, whose limits are its own; its answer.
template <typename Work>
int inChild(Work work) {
  const auto child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(PosixFilesTest, ANewFileIsItsOwnersAlone) {
  EXPECT_FALSE(files.writeAtomically(folder / "new.txt", "text\n"));
  EXPECT_EQ(readFile(folder / "new.txt"), "text\n");
  EXPECT_EQ(modeOf(folder / "new.txt"), 0600u);
  EXPECT_EQ(names(), std::vector<std::string>{"new.txt"});
}

TEST_F(PosixFilesTest, AReplacedFileKeepsItsMode) {
  writeFile(folder / "a.txt", "a long old text\n");
  ::chmod((folder / "a.txt").c_str(), 0644);
  EXPECT_FALSE(files.writeAtomically(folder / "a.txt", "new\n"));
  EXPECT_EQ(readFile(folder / "a.txt"), "new\n");
  EXPECT_EQ(modeOf(folder / "a.txt"), 0644u);
}

TEST_F(PosixFilesTest, ASymbolicLinkToNothingYetStaysOne) {
  fs::create_directory(folder / "elsewhere");
  fs::create_symlink("elsewhere/new.txt", folder / "link.txt");
  EXPECT_FALSE(files.writeAtomically(folder / "link.txt", "text"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.txt"));
  EXPECT_EQ(files.read(folder / "elsewhere" / "new.txt", nullptr), "text");
}

TEST_F(PosixFilesTest, ASymbolicLinkStaysOne) {
  fs::create_directory(folder / "elsewhere");
  writeFile(folder / "elsewhere" / "real.txt", "old\n");
  fs::create_symlink("elsewhere/real.txt", folder / "link.txt");
  EXPECT_FALSE(files.writeAtomically(folder / "link.txt", "new\n"));
  EXPECT_TRUE(fs::is_symlink(folder / "link.txt"));
  EXPECT_EQ(readFile(folder / "elsewhere" / "real.txt"), "new\n");
}

TEST_F(PosixFilesTest, ALinkToItselfIsAnError) {
  fs::create_symlink("loop.txt", folder / "loop.txt");
  static_cast<void>(files.writeAtomically(folder / "loop.txt", "new\n"));
  // Whatever became of the text, nothing temporary is left.
  EXPECT_EQ(names(), std::vector<std::string>{"loop.txt"});
}

TEST_F(PosixFilesTest, WritingAnEmptyTextEmptiesTheFile) {
  writeFile(folder / "a.txt", "old\n");
  EXPECT_FALSE(files.writeAtomically(folder / "a.txt", ""));
  EXPECT_EQ(readFile(folder / "a.txt"), "");
}

TEST_F(PosixFilesTest, WritingIntoAMissingFolderSaysSo) {
  EXPECT_EQ(files.writeAtomically(folder / "no" / "a.txt", "x"), Failure(errorText(ENOENT)));
  writeFile(folder / "file", "");
  EXPECT_EQ(files.writeAtomically(folder / "file" / "a.txt", "x"), Failure(errorText(ENOTDIR)));
}

TEST_F(PosixFilesTest, WritingOverAFolderFailsAndLeavesNothingTemporary) {
  fs::create_directory(folder / "taken");
  EXPECT_EQ(files.writeAtomically(folder / "taken", "x"), Failure(errorText(EISDIR)));
  EXPECT_EQ(names(), std::vector<std::string>{"taken"});
}

TEST_F(PosixFilesTest, AWriteThatRunsOutOfSpaceLeavesTheOldFileAndNothingTemporary) {
  writeFile(folder / "a.txt", "old\n");
  const auto answer = inChild([&] {
    // Beyond the limit a write fails; the signal that comes with it must not end the process.
    std::signal(SIGXFSZ, SIG_DFL);
    const rlimit limit{1024, 1024};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    const auto error = files.writeAtomically(folder / "a.txt", std::string(5000, 'x'));
    return error == Failure(errorText(EFBIG)) ? 0 : 1;
  });
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(readFile(folder / "a.txt"), "old\n");
  EXPECT_EQ(names(), std::vector<std::string>{"a.txt"});
}

TEST_F(PosixFilesTest, AWriteWithoutDescriptorsLeavesTheOldFile) {
  const auto answer = inChild([&] {
    // A sanitizer needs descriptors to look at an object for the first time.
    if (files.writeAtomically(folder / "a.txt", "old\n")) return 2;
    const rlimit limit{0, 0};
    if (::setrlimit(RLIMIT_NOFILE, &limit) != 0) return 2;
    return files.writeAtomically(folder / "a.txt", "new") == Failure(errorText(EMFILE)) ? 0 : 1;
  });
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(readFile(folder / "a.txt"), "old\n");
  EXPECT_EQ(names(), std::vector<std::string>{"a.txt"});
}

TEST_F(PosixFilesTest, AReadOnlyFolderLeavesTheOldFile) {
  if (::geteuid() == 0) GTEST_SKIP() << "the superuser may write everywhere";
  writeFile(folder / "a.txt", "old\n");
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(files.writeAtomically(folder / "a.txt", "new"), Failure(errorText(EACCES)));
  EXPECT_EQ(readFile(folder / "a.txt"), "old\n");
  fs::permissions(folder, fs::perms::owner_all);
}

TEST_F(PosixFilesTest, ReadsWholeFiles) {
  const std::string text(200'000, 'x');
  writeFile(folder / "a.txt", text);
  EXPECT_EQ(files.read(folder / "a.txt", nullptr), text);
  writeFile(folder / "empty.txt", "");
  EXPECT_EQ(files.read(folder / "empty.txt", nullptr), "");
}

TEST_F(PosixFilesTest, AReadThatFailsSaysWhy) {
  std::string error;
  EXPECT_FALSE(files.read(folder / "no.txt", &error).has_value());
  EXPECT_EQ(error, errorText(ENOENT));
  EXPECT_FALSE(files.read(folder, &error).has_value());
  EXPECT_EQ(error, errorText(EISDIR));
  EXPECT_FALSE(files.read(folder / "no.txt", nullptr).has_value());
}

TEST_F(PosixFilesTest, NobodyWaitsForAPipeOrADevice) {
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::string error;
  EXPECT_FALSE(files.read(folder / "pipe", &error).has_value());
  EXPECT_EQ(error, "not a regular file");
  EXPECT_FALSE(files.read("/dev/zero", &error).has_value());
  EXPECT_EQ(error, "not a regular file");
  EXPECT_EQ(files.map(folder / "pipe"), nullptr);
  files.appendToLog(folder / "pipe", "line\n", 8);
}

TEST_F(PosixFilesTest, AFileThatWouldFillTheMemoryIsNotRead) {
  writeFile(folder / "large.txt", "word\n");
  fs::resize_file(folder / "large.txt", std::uint64_t{2} * 1024 * 1024 * 1024);
  std::string error;
  EXPECT_FALSE(files.read(folder / "large.txt", &error).has_value());
  EXPECT_EQ(error, "the file is larger than 1 GiB");
}

TEST_F(PosixFilesTest, MapsFiles) {
  writeFile(folder / "a.txt", "text");
  const auto mapped = files.map(folder / "a.txt");
  ASSERT_NE(mapped, nullptr);
  EXPECT_EQ(mapped->bytes(), "text");
}

TEST_F(PosixFilesTest, AMapOutlivesItsReplacedFile) {
  writeFile(folder / "a.txt", "text");
  const auto mapped = files.map(folder / "a.txt");
  EXPECT_FALSE(files.writeAtomically(folder / "a.txt", ""));
  EXPECT_EQ(mapped->bytes(), "text");
}

TEST_F(PosixFilesTest, AMapOfAFileThatIsCutShortCanBeReadOn) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  writeFile(folder / "words", std::string(4 * page, 'a'));
  writeFile(folder / "others", std::string(page, 'b'));
  const auto words = files.map(folder / "words");
  const auto others = files.map(folder / "others");
  EXPECT_TRUE(words->isUnchanged());
  fs::resize_file(folder / "words", page);
  EXPECT_FALSE(words->hasLostPart());
  EXPECT_FALSE(words->isUnchanged());
  EXPECT_EQ(words->bytes(), std::string(page, 'a') + std::string(3 * page, '\n'));
  EXPECT_TRUE(words->hasLostPart());
  EXPECT_EQ(others->bytes(), std::string(page, 'b'));
  EXPECT_FALSE(others->hasLostPart());
  EXPECT_TRUE(others->isUnchanged());
}

TEST_F(PosixFilesTest, AMapTellsWritingInPlaceFromReplacing) {
  writeFile(folder / "words", "aaaa\n");
  ASSERT_FALSE(files.writeAtomically(folder / "replaced", "bbbb\n"));
  const auto words = files.map(folder / "words");
  const auto replaced = files.map(folder / "replaced");
  ASSERT_FALSE(files.writeAtomically(folder / "replaced", "cccc and more\n"));
  EXPECT_TRUE(replaced->isUnchanged());
  fs::remove(folder / "replaced");
  EXPECT_TRUE(replaced->isUnchanged());
  EXPECT_EQ(replaced->bytes(), "bbbb\n");
  // As long as before.
  fs::last_write_time(folder / "words", fs::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_FALSE(words->isUnchanged());
  EXPECT_FALSE(words->hasLostPart());
}

int foreignFaults = 0;

TEST_F(PosixFilesTest, FaultsOfOthersGoToTheirHandler) {
  std::signal(SIGBUS, [](int) { ++foreignFaults; });
  writeFile(folder / "words", "a\n");
  {
    const auto words = files.map(folder / "words");
    std::raise(SIGBUS);
    EXPECT_EQ(foreignFaults, 1);
  }
  std::raise(SIGBUS);
  EXPECT_EQ(foreignFaults, 2);
}

TEST_F(PosixFilesTest, WithoutAnotherHandlerAFaultEndsTheProcessAsEver) {
  const auto signalOf = [&](auto work) {
    const auto child = ::fork();
    if (child == 0) {
      const rlimit noCore{0, 0};
      ::setrlimit(RLIMIT_CORE, &noCore);
      std::signal(SIGBUS, SIG_DFL);
      const auto words = files.map(folder / "words");
      work();
      ::_exit(0);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  };
  writeFile(folder / "words", "a\n");
  EXPECT_EQ(signalOf([] { ::kill(::getpid(), SIGBUS); }), SIGBUS);
  EXPECT_EQ(signalOf([&] {
              // A region of somebody else's.
              const int file = ::open((folder / "words").c_str(), O_RDWR);
              const auto* bytes = static_cast<const volatile char*>(
                  ::mmap(nullptr, 2, PROT_READ, MAP_SHARED, file, 0));
              fs::resize_file(folder / "words", 0);
              static_cast<void>(bytes[0]);
            }),
            SIGBUS);
}

TEST_F(PosixFilesTest, AnEmptyFileMapsToNoBytes) {
  writeFile(folder / "empty.txt", "");
  const auto mapped = files.map(folder / "empty.txt");
  ASSERT_NE(mapped, nullptr);
  EXPECT_TRUE(mapped->bytes().empty());
}

TEST_F(PosixFilesTest, WhatIsNoFileCannotBeMapped) {
  EXPECT_EQ(files.map(folder / "no.txt"), nullptr);
  EXPECT_EQ(files.map(folder), nullptr);
  EXPECT_EQ(files.map("/dev/null"), nullptr);
}

TEST_F(PosixFilesTest, AStampTellsStatesOfAFileApart) {
  const auto file = folder / "a.txt";
  EXPECT_FALSE(files.stamp(file).has_value());
  writeFile(file, "one");
  const auto first = files.stamp(file);
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->size, 3u);
  EXPECT_TRUE(first->modified.has_value());
  EXPECT_TRUE(first->inode.has_value());
  EXPECT_EQ(files.stamp(file), first);
  // The same text and time in another file, by rename.
  const auto time = fs::last_write_time(file);
  writeFile(folder / "b.txt", "two");
  fs::rename(folder / "b.txt", file);
  fs::last_write_time(file, time);
  const auto second = files.stamp(file);
  EXPECT_EQ(second->modified, first->modified);
  EXPECT_EQ(second->size, first->size);
  EXPECT_NE(second, first);
  // A nanosecond is a change.
  fs::last_write_time(file, time + std::chrono::nanoseconds(1));
  EXPECT_EQ(*files.stamp(file)->modified, *first->modified + 1);
}

TEST_F(PosixFilesTest, CreatesFoldersWithThoseAbove) {
  const auto mask = ::umask(027);
  EXPECT_FALSE(files.createDirectories(folder / "a" / "b" / "c"));
  ::umask(mask);
  EXPECT_TRUE(fs::is_directory(folder / "a" / "b" / "c"));
  // As of any new folder; what is private in it is so by itself.
  EXPECT_EQ(modeOf(folder / "a"), 0750u);
  EXPECT_EQ(modeOf(folder / "a" / "b" / "c"), 0750u);
  EXPECT_FALSE(files.createDirectories(folder / "a" / "b" / "c"));
  EXPECT_FALSE(files.createDirectories(folder / "a" / "d" / ""));
}

TEST_F(PosixFilesTest, FoldersAboveMayBeLinks) {
  fs::create_directory(folder / "real");
  fs::create_directory_symlink(folder / "real", folder / "link");
  EXPECT_FALSE(files.createDirectories(folder / "link" / "new"));
  EXPECT_TRUE(fs::is_directory(folder / "real" / "new"));
}

TEST_F(PosixFilesTest, AFolderThatCannotBeMadeSaysWhy) {
  writeFile(folder / "file", "");
  EXPECT_EQ(files.createDirectories(folder / "file"), Failure(errorText(EEXIST)));
  EXPECT_EQ(files.createDirectories(folder / "file" / "a"), Failure(errorText(EEXIST)));
  EXPECT_EQ(files.createDirectories("/proc/no/such"), Failure(errorText(ENOENT)));
}

TEST_F(PosixFilesTest, KnowsWhatExistsAndCanBeRead) {
  writeFile(folder / "a.txt", "");
  fs::create_symlink("nowhere", folder / "broken");
  EXPECT_TRUE(files.exists(folder / "a.txt"));
  EXPECT_TRUE(files.isReadable(folder / "a.txt"));
  EXPECT_FALSE(files.exists(folder / "broken"));
  EXPECT_FALSE(files.isReadable(folder / "broken"));
  EXPECT_FALSE(files.exists(folder / "a.txt" / "below"));
}

TEST_F(PosixFilesTest, WhatCannotBeAskedForIsNotTakenToBeMissing) {
  fs::create_symlink("circle", folder / "circle");
  EXPECT_TRUE(files.exists(folder / "circle"));
}

TEST_F(PosixFilesTest, TheLogIsCreatedAppendedToAndRestarted) {
  const auto log = folder / "log";
  files.appendToLog(log, "one\n", 8);
  EXPECT_EQ(readFile(log), "one\n");
  files.appendToLog(log, "two\n", 8);
  files.appendToLog(log, "three\n", 8);
  EXPECT_EQ(readFile(log), "one\ntwo\nthree\n");
  files.appendToLog(log, "four\n", 8);
  EXPECT_EQ(readFile(log), "four\n");
}

TEST_F(PosixFilesTest, NoLineOfALogThatTwoWriteIsLost) {
  constexpr int kLines = 2000;
  const auto log = folder / "log";
  const auto write = [&](const char* line) {
    auto own = PosixFiles::ofUser();
    for (int i = 0; i < kLines; ++i)
      own->appendToLog(log, line, 1 << 20);
  };
  std::thread other(write, "other\n");
  write("one\n");
  other.join();
  EXPECT_EQ(fs::file_size(log), kLines * (sizeof "other" + sizeof "one"));
}

TEST_F(PosixFilesTest, ALogThatCannotBeWrittenIsIgnored) {
  files.appendToLog(folder, "line\n", 8);
  files.appendToLog(folder / "no" / "log", "line\n", 8);
  files.appendToLog("/dev/full", "line\n", 8);
  EXPECT_TRUE(names().empty());
}

TEST_F(PosixFilesTest, TheLogHasThePermissionsOfAnyNewFile) {
  const auto mask = ::umask(027);
  files.appendToLog(folder / "log", "line\n", 8);
  ::umask(mask);
  EXPECT_EQ(modeOf(folder / "log"), 0640u);
}

TEST_F(PosixFilesTest, TheLogMayBeALink) {
  writeFile(folder / "other", "text\n");
  fs::create_symlink("other", folder / "log");
  fs::create_symlink("nothing yet", folder / "new.log");
  files.appendToLog(folder / "log", "line\n", 80);
  files.appendToLog(folder / "new.log", "line\n", 80);
  EXPECT_EQ(readFile(folder / "other"), "text\nline\n");
  EXPECT_EQ(readFile(folder / "nothing yet"), "line\n");
  EXPECT_TRUE(fs::is_symlink(folder / "log"));
}

TEST_F(PosixFilesTest, TheLogMayBeTheStandardErrorOfTheProgram) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  EXPECT_EQ(inChild([&] {
              ::dup2(ends[1], STDERR_FILENO);
              files.appendToLog("/dev/stderr", "to a pipe\n", 8);
              const int file = ::open((folder / "errors").c_str(), O_WRONLY | O_CREAT, 0600);
              ::dup2(file, STDERR_FILENO);
              files.appendToLog("/dev/stderr", "to a file\n", 80);
              return 0;
            }),
            0);
  ::close(ends[1]);
  char text[80];
  const auto length = ::read(ends[0], text, sizeof text);
  ::close(ends[0]);
  EXPECT_EQ(std::string(text, static_cast<std::size_t>(std::max(length, ssize_t{0}))),
            "to a pipe\n");
  EXPECT_EQ(readFile(folder / "errors"), "to a file\n");
}

TEST_F(PosixFilesTest, NobodyWaitsForTheReaderOfALog) {
  ASSERT_EQ(::mkfifo((folder / "log").c_str(), 0600), 0);
  files.appendToLog(folder / "log", "nobody reads this\n", 8);
  const int reader = ::open((folder / "log").c_str(), O_RDONLY | O_NONBLOCK);
  files.appendToLog(folder / "log", "line\n", 8);
  char text[80];
  EXPECT_EQ(::read(reader, text, sizeof text), 5);
  // More than the pipe holds, and a reader who has stopped reading.
  const std::string much(1 << 20, 'x');
  files.appendToLog(folder / "log", much, 8);
  ::close(reader);
}

/// The name of what a write has left whose process was killed.
std::string nameOfAWriteOf(PosixFiles& files, const fs::path& folder) {
  const auto target = folder / "target";
  const auto leftover = [&] {
    std::string name;
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.path() != target) name = entry.path().filename();
    }
    return name;
  };
  // Most of the time a write is under way, but not always.
  for (int tries = 0; tries < 1000 && leftover().empty(); ++tries) {
    const auto child = ::fork();
    if (child == 0) {
      while (!files.writeAtomically(target, "text")) {
      }
      ::_exit(1);
    }
    while (leftover().empty()) {
    }
    ::kill(child, SIGKILL);
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  }
  fs::remove(target);
  const auto name = leftover();
  EXPECT_FALSE(name.empty());
  return name;
}

TEST_F(PosixFilesTest, WhatACutOffWriteHasLeftGoes) {
  const auto name = nameOfAWriteOf(files, folder);
  files.removeLeftovers(folder);
  // It may still be being written.
  EXPECT_EQ(names(), std::vector<std::string>{name});
  fs::last_write_time(folder / name, fs::file_time_type::clock::now() - std::chrono::hours(1));
  files.removeLeftovers(folder);
  files.removeLeftovers(folder / "no such folder");
  EXPECT_TRUE(names().empty());
}

TEST_F(PosixFilesTest, TheFirstWriteIntoAFolderRemovesWhatACutOffOneHasLeft) {
  const auto name = nameOfAWriteOf(files, folder);
  fs::last_write_time(folder / name, fs::file_time_type::clock::now() - std::chrono::hours(1));
  PosixFiles nextStart{folder, folder / "data"};
  EXPECT_FALSE(nextStart.writeAtomically(folder / "a.txt", "text"));
  EXPECT_EQ(names(), std::vector<std::string>{"a.txt"});
}

TEST_F(PosixFilesTest, NoFileThatAPersonHasMadeIsTakenForALeftover) {
  const auto ours = nameOfAWriteOf(files, folder);
  fs::remove(folder / ours);
  auto lastDigit = ours;
  auto& digit = lastDigit[lastDigit.find('.', 1) - 1];
  digit = digit == '0' ? '1' : '0';
  const auto old = fs::file_time_type::clock::now() - std::chrono::hours(24 * 365);
  std::vector<std::string> others = {".notes.txt.latest",
                                     ".dictionary.txt.backup",
                                     ".rejects.txt.aB3dE9",
                                     ".settings.json.000000",
                                     "rejects.txt",
                                     ".learning.lock",
                                     ".tessarok-notes.backup",
                                     lastDigit,
                                     ours + "~",
                                     ours.substr(1),
                                     ours.substr(0, ours.size() - 1),
                                     "copy of " + ours};
  for (const auto& name : others) {
    writeFile(folder / name, "half");
    fs::last_write_time(folder / name, old);
  }
  // Not even under its name is what a person has made a folder, a link or a second name of.
  fs::create_directory(folder / ours);
  fs::last_write_time(folder / ours, old);
  files.removeLeftovers(folder);
  EXPECT_TRUE(fs::exists(folder / ours));
  fs::remove(folder / ours);
  fs::create_hard_link(folder / "rejects.txt", folder / ours);
  files.removeLeftovers(folder);
  EXPECT_TRUE(fs::exists(folder / ours));
  others.push_back(ours);
  auto left = names();
  std::sort(left.begin(), left.end());
  std::sort(others.begin(), others.end());
  EXPECT_EQ(left, others);
}

TEST_F(PosixFilesTest, ATargetWithTheLongestOfNamesIsWritten) {
  const std::string name(255, 'n');
  EXPECT_FALSE(files.writeAtomically(folder / name, "text"));
  EXPECT_EQ(names(), std::vector<std::string>{name});
}

TEST_F(PosixFilesTest, ALockKeepsAnotherProcessOutUntilItGoes) {
  const auto file = folder / "instance.lock";
  const auto tryInChild = [&] {
    return inChild([&] {
      const auto result = files.lockExclusively(file);
      const auto* failure = std::get_if<FileLockFailure>(&result);
      if (failure == nullptr) return 0;
      return failure->reason == FileLockFailure::Reason::heldByAnother &&
                     failure->number == EWOULDBLOCK
                 ? 1
                 : 2;
    });
  };
  {
    const auto result = files.lockExclusively(file);
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<platform::FileLock>>(result));
    EXPECT_EQ(tryInChild(), 1);
    EXPECT_EQ(readFile(file), "");
  }
  EXPECT_TRUE(fs::exists(file));
  EXPECT_EQ(tryInChild(), 0);
}

TEST_F(PosixFilesTest, AStaleLockFileHoldsNobodyOff) {
  writeFile(folder / "instance.lock", "123456789\nand more\n");
  const auto result = files.lockExclusively(folder / "instance.lock");
  ASSERT_TRUE(std::holds_alternative<std::unique_ptr<platform::FileLock>>(result));
  EXPECT_EQ(readFile(folder / "instance.lock"), "123456789\nand more\n");
}

TEST_F(PosixFilesTest, ALockThroughALinkLeavesTheFileAsItIs) {
  writeFile(folder / "precious", "text\n");
  fs::create_symlink("precious", folder / "instance.lock");
  const auto held = files.lockExclusively(folder / "instance.lock");
  ASSERT_TRUE(std::holds_alternative<std::unique_ptr<platform::FileLock>>(held));
  EXPECT_TRUE(
      std::holds_alternative<FileLockFailure>(files.lockExclusively(folder / "instance.lock")));
  EXPECT_EQ(readFile(folder / "precious"), "text\n");
  EXPECT_TRUE(fs::is_symlink(folder / "instance.lock"));
}

TEST_F(PosixFilesTest, ALockThatCannotBeOpenedSaysWhy) {
  const auto result = files.lockExclusively(folder);
  const auto* failure = std::get_if<FileLockFailure>(&result);
  ASSERT_NE(failure, nullptr);
  EXPECT_EQ(failure->reason, FileLockFailure::Reason::cannotOpen);
  EXPECT_EQ(failure->number, EISDIR);
}

TEST_F(PosixFilesTest, ANewLockFileIsItsOwnersAlone) {
  const auto result = files.lockExclusively(folder / "instance.lock");
  EXPECT_EQ(modeOf(folder / "instance.lock"), 0600u);
}

TEST(PosixFiles, KeepsDataWhereTheBaseDirectoryRulesSay) {
  ::setenv("HOME", "/home/somebody", 1);
  ::unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(PosixFiles::ofUser()->homeDirectory(), "/home/somebody");
  EXPECT_EQ(PosixFiles::ofUser()->applicationSupportDirectory(),
            fs::path("/home/somebody/.local/share"));
  ::setenv("XDG_DATA_HOME", "/data", 1);
  EXPECT_EQ(PosixFiles::ofUser()->applicationSupportDirectory(), fs::path("/data"));
  for (const char* unusable : {"", "relative/path"}) {
    ::setenv("XDG_DATA_HOME", unusable, 1);
    EXPECT_EQ(PosixFiles::ofUser()->applicationSupportDirectory(),
              fs::path("/home/somebody/.local/share"));
  }
}

TEST(PosixFiles, FindsAHomeWithoutTheVariable) {
  ::unsetenv("HOME");
  EXPECT_TRUE(PosixFiles::ofUser()->homeDirectory().is_absolute());
}

}  // namespace
}  // namespace tessarok::posix
