#include "desktops/terminal/Pty.h"

#include <cerrno>
#include <fcntl.h>
#ifdef __APPLE__
#include <util.h>
#else
#include <pty.h>
#endif
#include <signal.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "desktops/posix/ArgumentList.h"
#include "desktops/posix/Pipe.h"
#include "desktops/posix/Translation.h"
#include "desktops/posix/WriteSignals.h"

namespace tessarok::terminal {

namespace {

using posix::argumentsOf;
using posix::FileDescriptor;

constexpr int kNotFound = 127;
constexpr int kNotExecutable = 126;
constexpr int kKilled = 128;

Pty::Failure failureOf(const std::string& what, int error, int exitStatus) {
  return {what + ": " + std::generic_category().message(error), exitStatus};
}

Pty::Failure failureToRun(const std::string& program, int error) {
  const bool isPath = program.find('/') != std::string::npos;
  if (error == ENOENT && !isPath) {
    return {posix::translated("{1}: command not found", {program}), kNotFound};
  }
  return failureOf(program, error, error == ENOENT ? kNotFound : kNotExecutable);
}

/// In the new process: becomes the program, or writes why it cannot. Allocates nothing.
[[noreturn]] void run(char* const* arguments, int report) {
  posix::restoreWriteSignals();
  ::execvp(arguments[0], arguments);
  const int error = errno;
  [[maybe_unused]] const auto written = ::write(report, &error, sizeof error);
  ::_exit(kNotFound);
}

/// The error that kept the program from running; 0 when it runs.
int readError(int report) {
  int error = 0;
  ssize_t count = 0;
  do {
    count = ::read(report, &error, sizeof error);
  } while (count < 0 && errno == EINTR);
  return count == sizeof error ? error : 0;
}

bool makePrivate(int descriptor) {
  return ::fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0 &&
         ::fcntl(descriptor, F_SETFL, O_RDWR | O_NONBLOCK) == 0;
}

}  // namespace

Pty::Failure Pty::become(const std::vector<std::string>& command) {
  ::execvp(command.front().c_str(), argumentsOf(command).data());
  return failureToRun(command.front(), errno);
}

std::variant<Pty, Pty::Failure> Pty::start(const std::vector<std::string>& command,
                                           termios settings, const winsize& size) {
  const auto arguments = argumentsOf(command);
  // Without it the kernel's line editor erases bytes, not characters.
  settings.c_iflag |= IUTF8;

  auto report = posix::openPipe(posix::PipeMode::waiting);
  if (!report) return failureOf("pipe", errno, kNotExecutable);
  int master = -1;
  auto copyOfSize = size;
  const pid_t program = ::forkpty(&master, nullptr, &settings, &copyOfSize);
  if (program < 0) return failureOf("pseudo-terminal", errno, kNotExecutable);
  if (program == 0) run(arguments.data(), report->writer.get());
  Pty pty(FileDescriptor(master), program);
  report->writer = FileDescriptor();
  if (const int error = readError(report->reader.get()); error != 0) {
    ::waitpid(program, nullptr, 0);
    return failureToRun(command.front(), error);
  }
  if (!makePrivate(master)) return failureOf("pseudo-terminal", errno, kNotExecutable);
  return pty;
}

std::optional<PtyModes> Pty::modes() const {
  termios settings{};
  if (::tcgetattr(descriptor_.get(), &settings) != 0) return std::nullopt;
  return PtyModes(settings);
}

pid_t Pty::foregroundGroup() const {
  return ::tcgetpgrp(descriptor_.get());
}

void Pty::setSize(const winsize& size) {
  ::ioctl(descriptor_.get(), TIOCSWINSZ, &size);
}

std::optional<int> Pty::exitStatus() {
  if (exitStatus_) return exitStatus_;
  int status = 0;
  if (::waitpid(program_, &status, WNOHANG) != program_) return std::nullopt;
  if (WIFEXITED(status)) exitStatus_ = WEXITSTATUS(status);
  wasKilled_ = WIFSIGNALED(status);
  if (wasKilled_) exitStatus_ = kKilled + WTERMSIG(status);
  return exitStatus_;
}

}  // namespace tessarok::terminal
