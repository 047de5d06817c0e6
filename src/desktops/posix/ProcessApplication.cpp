#include "desktops/posix/ProcessApplication.h"

#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <unistd.h>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

fs::path folderOf(pid_t process) {
  return fs::path("/proc") / std::to_string(process);
}

/// Seconds from the start of the system to that of a process; absent when it is not known.
std::optional<double> launchDateOf(pid_t process) {
  std::ifstream file(folderOf(process) / "stat");
  std::string line;
  if (!std::getline(file, line)) return std::nullopt;
  // The name, in brackets, may hold anything.
  const auto end = line.rfind(')');
  if (end == std::string::npos) return std::nullopt;
  std::istringstream fields(line.substr(end + 1));
  // The third field comes next; the twenty-second is the start.
  constexpr int kFieldsBefore = 19;
  std::string skipped;
  for (int i = 0; i < kFieldsBefore; ++i)
    fields >> skipped;
  double ticks = 0;
  if (!(fields >> ticks)) return std::nullopt;
  return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// The program that a process runs; empty when it has ended or is somebody else's.
fs::path programOf(pid_t process) {
  std::error_code error;
  return fs::read_symlink(folderOf(process) / "exe", error);
}

/// The process that holds the lock on a file, as the kernel says: what is written in the file may
/// be of a process that has long ended, and its number somebody else's. 0 when there is none, or
/// none that can be seen from here. Not to be asked while this process holds it: to close the file
/// would give it up.
pid_t holderOf(const fs::path& lockFile) {
  const FileDescriptor file(::open(lockFile.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  if (!file.isOpen() || ::fcntl(file.get(), F_GETLK, &lock) != 0) return 0;
  return lock.l_type == F_UNLCK ? 0 : lock.l_pid;
}

}  // namespace

platform::RunningApplication ProcessApplication::self() {
  return {.processIdentifier = ::getpid(), .launchDate = launchDateOf(::getpid())};
}

std::vector<platform::RunningApplication> ProcessApplication::running(std::string_view) {
  std::vector<platform::RunningApplication> all{self()};
  if (!lockFile_) return all;
  const auto other = holderOf(*lockFile_);
  if (other <= 0 || other == ::getpid()) return all;
  const auto program = programOf(other);
  if (program.empty() || program.filename() != programOf(::getpid()).filename()) return all;
  all.push_back({.processIdentifier = other, .launchDate = launchDateOf(other)});
  return all;
}

}  // namespace tessarok::posix
