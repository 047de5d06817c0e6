#include "desktops/freedesktop/Programs.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "desktops/posix/ArgumentList.h"

namespace tessarok::freedesktop {

namespace {

/// How a started program differs from this one: it has no terminal to read, its own session, so
/// that what ends this program's does not end it, and no signal blocked or ignored.
class Surroundings {
 public:
  Surroundings() {
    posix_spawn_file_actions_init(&files_);
    posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(
        &attributes_,
        static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;
  ~Surroundings() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }

  [[nodiscard]] const posix_spawn_file_actions_t* files() const { return &files_; }
  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_;
  posix_spawnattr_t attributes_;
};

/// glibc 2.36 has a function for it, older ones have only the call.
int openProcess(pid_t process) {
  return static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
}

}  // namespace

Programs::~Programs() {
  for (const auto& program : running_) {
    if (program->source) loop_.remove(*program->source);
  }
}

int Programs::start(const std::vector<std::string>& command, Ended ended) {
  const auto arguments = posix::argumentsOf(command);
  seeOffUnwatched();
  const Surroundings surroundings;
  pid_t process = -1;
  const int error = ::posix_spawnp(&process, arguments[0], surroundings.files(),
                                   surroundings.attributes(), arguments.data(), environ);
  if (error == 0) watch(process, std::move(ended));
  return error;
}

void Programs::watch(pid_t process, Ended ended) {
  auto program = std::make_unique<Running>();
  program->process = process;
  program->ended = std::move(ended);
  program->handle = posix::FileDescriptor(openProcess(process));
  if (program->handle.isOpen()) {
    program->source = std::make_unique<posix::CallbackSource>(
        program->handle.get(), [] { return static_cast<short>(POLLIN); },
        [this, process](short) { seeOff(process); });
    loop_.add(*program->source);
  }
  running_.push_back(std::move(program));
}

void Programs::seeOffUnwatched() {
  std::vector<pid_t> unwatched;
  for (const auto& program : running_) {
    if (!program->source) unwatched.push_back(program->process);
  }
  for (const auto process : unwatched)
    seeOff(process);
}

void Programs::seeOff(pid_t process) {
  int status = 0;
  if (::waitpid(process, &status, WNOHANG) == 0) return;
  const auto found = std::find_if(running_.begin(), running_.end(), [process](const auto& program) {
    return program->process == process;
  });
  // The loop may still be in the source's own function.
  const auto program = std::move(*found);
  running_.erase(found);
  if (program->ended) {
    program->ended(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
  }
  if (!program->source) return;
  loop_.remove(*program->source);
  loop_.async([source = std::shared_ptr<posix::CallbackSource>(std::move(program->source))] {});
}

}  // namespace tessarok::freedesktop
