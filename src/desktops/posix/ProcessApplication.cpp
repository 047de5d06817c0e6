#include "desktops/posix/ProcessApplication.h"

#include <fcntl.h>
#include <unistd.h>

#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/Processes.h"

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

}  // namespace

pid_t ProcessApplication::holderOf(const fs::path& lockFile) {
  const FileDescriptor file(::open(lockFile.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  if (!file.isOpen() || ::fcntl(file.get(), F_GETLK, &lock) != 0) return 0;
  return lock.l_type == F_UNLCK ? 0 : lock.l_pid;
}

platform::RunningApplication ProcessApplication::self() {
  return {.processIdentifier = ::getpid(), .launchDate = launchDateOf(::getpid())};
}

std::vector<platform::RunningApplication> ProcessApplication::running(std::string_view) {
  std::vector<platform::RunningApplication> all{self()};
  if (!lockFile_) return all;
  const auto other = holderOf(*lockFile_);
  if (other <= 0 || other == ::getpid()) return all;
  const auto program = programFileOf(other);
  const auto own = programFileOf(::getpid());
  if (!program || !own || program->filename() != own->filename()) return all;
  all.push_back({.processIdentifier = other, .launchDate = launchDateOf(other)});
  return all;
}

}  // namespace tessarok::posix
