#include "desktops/posix/NewFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "desktops/posix/DiskFlush.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/WriteAll.h"
#include "desktops/posix/WriteSignals.h"

namespace tessarok::posix {

namespace {

/// Less what the person's mask takes away.
constexpr mode_t kUsualMode = 0666;

platform::Failure lastFailure() {
  return platform::Failure(std::generic_category().message(errno));
}

platform::Failure writeInto(FileDescriptor& descriptor, std::string_view text) {
  const bool isWritten = writeAll(descriptor.get(), text) && flushToDisk(descriptor.get());
  if (!isWritten || !descriptor.close()) return lastFailure();
  return platform::Failure::none();
}

/// Gives the finished file its name, unless that is taken.
platform::Failure giveName(const std::string& temporary, const std::filesystem::path& file) {
  if (::link(temporary.c_str(), file.c_str()) == 0) return platform::Failure::none();
  const bool hasLinks = errno != EPERM && errno != ENOTSUP && errno != ENOSYS;
  if (hasLinks) return lastFailure();
  // A file system without links, as on a memory stick.
  struct stat status {};
  if (::lstat(file.c_str(), &status) == 0) {
    errno = EEXIST;
    return lastFailure();
  }
  return ::rename(temporary.c_str(), file.c_str()) == 0 ? platform::Failure::none() : lastFailure();
}

}  // namespace

platform::Failure writeNewFile(const std::filesystem::path& file, std::string_view text) {
  const WriteSignalsBlocked errorsInstead;
  const auto folder = file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
  const auto temporary =
      (folder / ("." + file.filename().string() + "." + std::to_string(::getpid()))).string();
  FileDescriptor descriptor(
      ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsualMode));
  if (!descriptor.isOpen()) return lastFailure();
  auto failure = writeInto(descriptor, text);
  if (!failure) failure = giveName(temporary, file);
  ::unlink(temporary.c_str());
  return failure;
}

}  // namespace tessarok::posix
