#include "desktops/posix/PosixFiles.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "desktops/posix/DiskFlush.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/MappingGuard.h"
#include "desktops/posix/PagesAtHand.h"
#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/PersonsFolders.h"
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

/// When the file was written, and how long it is.
struct Content {
  std::int64_t seconds;
  std::int64_t nanoseconds;
  off_t size;

  bool operator==(const Content&) const = default;
};

std::optional<Content> contentOf(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return std::nullopt;
#ifdef __APPLE__
  const auto& time = status.st_mtimespec;
#else
  const auto& time = status.st_mtim;
#endif
  return Content{time.tv_sec, time.tv_nsec, status.st_size};
}

class Mapping final : public platform::MappedFile {
 public:
  Mapping(void* address, const Content& content, FileDescriptor descriptor)
      : address_(address),
        size_(static_cast<std::size_t>(content.size)),
        content_(content),
        descriptor_(std::move(descriptor)),
        guard_(address, size_),
        pages_(descriptor_.get(), bytes()) {}
  ~Mapping() override {
    if (size_ > 0) ::munmap(address_, size_);
  }
  [[nodiscard]] std::string_view bytes() const override {
    return {static_cast<const char*>(address_), size_};
  }
  [[nodiscard]] bool hasLostPart() const override { return guard_.hasLostPart(); }
  [[nodiscard]] bool isUnchanged() const override {
    // Of the file that is mapped, whatever has taken its name since.
    const auto now = contentOf(descriptor_.get());
    return !hasLostPart() && (!now || *now == content_);
  }
  [[nodiscard]] bool isAtHand(std::size_t from, std::size_t to) override {
    return pages_.contain(from, to);
  }
  void askAnew() override { pages_.askAnew(); }

 private:
  void* address_;
  std::size_t size_;
  Content content_;
  FileDescriptor descriptor_;
  MappingGuard guard_;
  PagesAtHand pages_;
};

class Lock final : public platform::FileLock {
 public:
  explicit Lock(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

 private:
  FileDescriptor descriptor_;
};

/// What mkostemp is to replace in the name of a temporary file.
constexpr std::string_view kRandomPart = ".XXXXXX";
/// No write takes so long, not even on a disk that has to wake up.
constexpr auto kLongestWrite = std::chrono::minutes(5);
constexpr std::string_view kTemporaryStart = ".tessarok-";
constexpr std::size_t kNumberDigits = 16;

/// 16 digits that follow from a text (FNV-1a).
std::string checkDigits(std::string_view text) {
  std::uint64_t sum = 0xcbf29ce484222325;
  for (const char c : text)
    sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  std::array<char, kNumberDigits + 1> digits{};
  std::snprintf(digits.data(), digits.size(), "%016" PRIx64, sum);
  return digits.data();
}

/// The name of a file that is to be put in the place of another: so far it is the program's, and
/// what is left of a write that was cut off must never be taken for a file of the person's, nor
/// one of those for it. So the name holds a number and what follows from the number, which nobody
/// writes by chance. It does not grow with the target's, which may be as long as names can be.
std::string temporaryName() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  const auto number = checkDigits(std::to_string(::getpid()) + ' ' + std::to_string(now));
  return std::string(kTemporaryStart) + number + '-' + checkDigits(number) +
         std::string(kRandomPart);
}

/// Whether `temporaryName`, and mkostemp, have made the name.
bool isTemporaryName(std::string_view name) {
  if (!name.starts_with(kTemporaryStart)) return false;
  name.remove_prefix(kTemporaryStart.size());
  if (name.size() != 2 * kNumberDigits + 1 + kRandomPart.size()) return false;
  const auto number = name.substr(0, kNumberDigits);
  return name.substr(kNumberDigits).starts_with('-' + checkDigits(number) + '.');
}

/// Whether a file is what a write that was cut off has left. Written to or linked by anybody else,
/// it is not.
bool isLeftover(const fs::path& file) {
  if (!isTemporaryName(file.filename().string())) return false;
  struct stat status {};
  if (::lstat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (status.st_uid != ::geteuid() || status.st_nlink != 1) return false;
  const auto written = std::chrono::system_clock::from_time_t(status.st_mtime);
  return written + kLongestWrite < std::chrono::system_clock::now();
}

/// A new file beside the target that goes away unless it was put in the target's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& target)
      : name_((target.parent_path() / temporaryName()).string()),
        descriptor_(::mkostemp(name_.data(), O_CLOEXEC)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (exists_) ::unlink(name_.c_str());
  }

  /// Writes the text to the disk and puts the file in the target's place; false leaves errno.
  [[nodiscard]] bool replace(const fs::path& target, std::string_view text) {
    if (!descriptor_.isOpen()) return false;
    exists_ = true;
    keepMode(target);
    if (!writeAll(descriptor_.get(), text) || !flushToDisk(descriptor_.get())) return false;
    if (!descriptor_.close()) return false;
    if (::rename(name_.c_str(), target.c_str()) != 0) return false;
    exists_ = false;
    return true;
  }

 private:
  void keepMode(const fs::path& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0) {
      // Should it fail, the new file stays readable for its owner alone.
      static_cast<void>(::fchmod(descriptor_.get(), status.st_mode & 07777));
    }
  }

  std::string name_;
  FileDescriptor descriptor_;
  bool exists_ = false;
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
  auto descriptor = openRegularFile(file, O_RDONLY);
  const auto content = descriptor.isOpen() ? contentOf(descriptor.get()) : std::nullopt;
  if (!content) return nullptr;
  void* address = nullptr;
  // A mapping cannot be empty.
  if (content->size > 0) {
    address = ::mmap(nullptr, static_cast<std::size_t>(content->size), PROT_READ, MAP_PRIVATE,
                     descriptor.get(), 0);
    if (address == MAP_FAILED) return nullptr;
  }
  return std::make_unique<Mapping>(address, *content, std::move(descriptor));
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
    if (isLeftover(entry->path())) ::unlink(entry->path().c_str());
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
