#include "desktops/posix/PosixFiles.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "desktops/posix/DiskFlush.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/FileMapping.h"
#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/PersonsFolders.h"
#include "desktops/posix/TemporaryFile.h"
#include "desktops/posix/Translation.h"
#include "desktops/posix/WriteAll.h"
#include "desktops/posix/WriteSignals.h"

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

/// Files that hold words are the person's alone.
constexpr mode_t kFileMode = 0600;
/// What the person's own mask leaves of it is the default of every program.
constexpr mode_t kDefaultFileMode = 0666;
constexpr mode_t kDefaultFolderMode = 0777;

std::string errorText(int number) {
  return std::generic_category().message(number);
}

FileDescriptor openFile(const fs::path& file, int flags, mode_t mode = kFileMode) {
  int descriptor = -1;
  do {
    descriptor = ::open(file.c_str(), flags | O_CLOEXEC, mode);
  } while (descriptor < 0 && errno == EINTR);
  return FileDescriptor(descriptor);
}

/// Opens a file and nothing else. What a folder, a pipe or a device of this name would do to the
/// reader, such as wait for ever, is not done. Leaves errno; a pipe or a device is EINVAL.
FileDescriptor openRegularFile(const fs::path& file, int flags) {
  // Without it the opening of a pipe waits; to regular files it means nothing.
  auto descriptor = openFile(file, flags | O_NONBLOCK | O_NOCTTY);
  struct stat status {};
  if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) return {};
  if (S_ISREG(status.st_mode)) return descriptor;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return {};
}

std::string readErrorText(int number) {
  if (number == EINVAL) return translated("not a regular file");
  if (number == EFBIG) return translated("the file is larger than 1 GiB");
  return errorText(number);
}

/// What is read are lists of words: a file beyond this size, in bytes, is there in their place by
/// mistake and would fill the memory.
constexpr std::uint64_t kMostRead = std::uint64_t{1024} * 1024 * 1024;

/// The error number of a failed read; 0 on success.
int readAll(int descriptor, std::string& text) {
  struct stat status {};
  // What is far too large is not begun with; what grows meanwhile is stopped below.
  if (::fstat(descriptor, &status) == 0) {
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > kMostRead) return EFBIG;
    text.reserve(size);
  }
  std::vector<char> chunk(65536);
  while (true) {
    if (text.size() > kMostRead) return EFBIG;
    const auto count = ::read(descriptor, chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) return 0;
    text.append(chunk.data(), static_cast<std::size_t>(count));
  }
}

class Lock final : public platform::FileLock {
 public:
  explicit Lock(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

 private:
  FileDescriptor descriptor_;
};

/// A record lock on a whole file, however long it grows.
struct flock wholeFile() {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  return lock;
}

/// The lock proper is the open file's and cannot be asked for without trying to take it. This
/// second one, the process's, can; where it is not to be had, the first still holds.
void markAsLocked(int descriptor) {
  auto mark = wholeFile();
  static_cast<void>(::fcntl(descriptor, F_SETLK, &mark));
}

/// A rename is on the disk only when its folder is.
void flushFolder(const fs::path& folder) {
  const auto descriptor = openFile(folder, O_RDONLY | O_DIRECTORY);
  if (descriptor.isOpen()) static_cast<void>(flushToDisk(descriptor.get()));
}

/// Where a write has to go so that a symbolic link at `file` stays one, whether or not there is
/// anything at its end.
fs::path linkTarget(fs::path file) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int links = 0; links < kMostLinks && fs::is_symlink(file, error); ++links) {
    const auto target = fs::read_symlink(file, error);
    if (error) break;
    // An absolute target stands for itself.
    file = file.parent_path() / target;
  }
  return file;
}

fs::path homeOfUser() {
  if (const auto home = personsVariable("HOME"); home && !home->empty()) return *home;
  const auto* entry = ::getpwuid(::getuid());
  return entry != nullptr ? entry->pw_dir : "/";
}

}  // namespace

PosixFiles::PosixFiles(fs::path home, std::optional<fs::path> applicationSupport)
    : home_(std::move(home)), applicationSupport_(std::move(applicationSupport)) {}

std::unique_ptr<PosixFiles> PosixFiles::ofUser() {
  const auto home = homeOfUser();
  return std::make_unique<PosixFiles>(home, dataHome(home));
}

fs::path PosixFiles::defaultDataHome(const fs::path& home) {
  return home / ".local" / "share";
}

bool PosixFiles::exists(const fs::path& file) {
  std::error_code error;
  const bool isThere = fs::exists(file, error);
  // Of what cannot be asked for now it is not known that it is missing, and what is missing may
  // be made anew.
  return isThere || error;
}

bool PosixFiles::isReadable(const fs::path& file) {
  return ::access(file.c_str(), R_OK) == 0;
}

std::optional<platform::FileStamp> PosixFiles::stamp(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return std::nullopt;
#ifdef __APPLE__
  const auto& time = status.st_mtimespec;
#else
  const auto& time = status.st_mtim;
#endif
  return platform::FileStamp{
      .modified = static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec,
      .size = static_cast<std::uint64_t>(status.st_size),
      .inode = static_cast<std::uint64_t>(status.st_ino)};
}

std::optional<std::string> PosixFiles::read(const fs::path& file, std::string* error) {
  std::string text;
  const auto descriptor = openRegularFile(file, O_RDONLY);
  const int number = descriptor.isOpen() ? readAll(descriptor.get(), text) : errno;
  if (number == 0) return text;
  if (error != nullptr) *error = readErrorText(number);
  return std::nullopt;
}

std::vector<std::string> PosixFiles::list(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  return names;
}

std::unique_ptr<platform::MappedFile> PosixFiles::map(const fs::path& file) {
  return mapWhole(openRegularFile(file, O_RDONLY));
}

platform::Failure PosixFiles::createDirectories(const fs::path& folder) {
  fs::path made;
  for (const auto& part : folder) {
    made /= part;
    if (::mkdir(made.c_str(), kDefaultFolderMode) == 0) continue;
    const int number = errno;
    std::error_code error;
    if (!fs::is_directory(made, error)) return platform::Failure(errorText(number));
  }
  return platform::Failure::none();
}

platform::Failure PosixFiles::writeAtomically(const fs::path& file, std::string_view text) {
  const WriteSignalsBlocked errorsInstead;
  const auto target = linkTarget(file);
  tidyUpOnce(target.parent_path());
  TemporaryFile temporary(target);
  if (!temporary.replace(target, text)) return platform::Failure(errorText(errno));
  flushFolder(target.parent_path());
  return platform::Failure::none();
}

bool PosixFiles::remove(const fs::path& file) {
  return ::unlink(file.c_str()) == 0 || errno == ENOENT;
}

void PosixFiles::tidyUpOnce(const fs::path& folder) {
  {
    const std::lock_guard lock(mutex_);
    if (!tidiedUp_.insert(folder).second) return;
  }
  removeLeftovers(folder);
}

void PosixFiles::removeLeftovers(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (TemporaryFile::isLeftover(entry->path())) ::unlink(entry->path().c_str());
  }
}

void PosixFiles::appendToLog(const fs::path& file, std::string_view text,
                             std::uint64_t restartAbove) {
  const WriteSignalsBlocked errorsInstead;
  // Several copies may write it, each at what is the end by then. The path may be a pipe's, as
  // /dev/stderr often is. Nobody waits for whoever reads it.
  constexpr int kFlags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY;
  const auto existing = openFile(file, kFlags);
  if (!existing.isOpen()) {
    const auto created = openFile(file, kFlags | O_CREAT, kDefaultFileMode);
    if (created.isOpen()) static_cast<void>(writeAll(created.get(), text));
    return;
  }
  const auto size = ::lseek(existing.get(), 0, SEEK_END);
  // Pipes and terminals have no size to look at.
  if (size < 0 && errno != ESPIPE) return;
  if (size > 0 && static_cast<std::uint64_t>(size) > restartAbove) {
    if (::ftruncate(existing.get(), 0) != 0) return;
  }
  static_cast<void>(writeAll(existing.get(), text));
}

bool PosixFiles::isLockedByAnother(const fs::path& file) {
  const auto descriptor = openFile(file, O_RDWR);
  auto mark = wholeFile();
  return descriptor.isOpen() && ::fcntl(descriptor.get(), F_GETLK, &mark) == 0 &&
         mark.l_type != F_UNLCK;
}

platform::FileLockResult PosixFiles::lockExclusively(const fs::path& file) {
  using Reason = platform::FileLockFailure::Reason;
  auto descriptor = openFile(file, O_RDWR | O_CREAT);
  if (!descriptor.isOpen()) return platform::FileLockFailure{Reason::cannotOpen, errno};
  int number = 0;
  do {
    number = ::flock(descriptor.get(), LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
  } while (number == EINTR);
  if (number != 0) {
    return platform::FileLockFailure{
        number == EWOULDBLOCK ? Reason::heldByAnother : Reason::cannotLock, number};
  }
  markAsLocked(descriptor.get());
  return std::make_unique<Lock>(std::move(descriptor));
}

}  // namespace tessarok::posix
