#include "Program.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "StandardFile.h"

namespace tessarok::makedata {

namespace {

[[noreturn]] void throwError(int error, const char* what) {
  throw std::system_error(error, std::generic_category(), what);
}

class Descriptor final {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int get() const { return fd_; }

  void close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_;
};

/// The input goes through an unnamed file and not a pipe: a pipe would need a second thread, or a
/// program that writes before it has read everything would block both sides for ever.
StandardFile fileHolding(const std::string& bytes) {
  StandardFile file(std::tmpfile());
  if (!file) throwError(errno, "tmpfile");
  if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() ||
      std::fflush(file.get()) != 0) {
    throwError(errno, "tmpfile");
  }
  std::rewind(file.get());
  return file;
}

class SpawnActions final {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&actions_); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  void redirect(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
  void discard(int fd) {
    posix_spawn_file_actions_addopen(&actions_, fd, "/dev/null", O_WRONLY, 0);
  }
  void close(int fd) { posix_spawn_file_actions_addclose(&actions_, fd); }
  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

std::string readAll(int fd) {
  std::string bytes;
  std::array<char, 65536> chunk{};
  for (;;) {
    const ssize_t got = ::read(fd, chunk.data(), chunk.size());
    if (got > 0) bytes.append(chunk.data(), static_cast<std::size_t>(got));
    if (got == 0) return bytes;
    if (got < 0 && errno != EINTR) throwError(errno, "read");
  }
}

int waitFor(pid_t child) {
  int state = 0;
  while (waitpid(child, &state, 0) < 0) {
    if (errno != EINTR) throwError(errno, "waitpid");
  }
  return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
}

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& command, const std::string& input) {
  const StandardFile source = fileHolding(input);
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throwError(errno, "pipe");
  const Descriptor readEnd(ends[0]);
  Descriptor writeEnd(ends[1]);

  SpawnActions actions;
  actions.redirect(fileno(source.get()), STDIN_FILENO);
  actions.redirect(writeEnd.get(), STDOUT_FILENO);
  actions.discard(STDERR_FILENO);
  actions.close(readEnd.get());
  actions.close(writeEnd.get());

  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);

  pid_t child = 0;
  const int error =
      posix_spawnp(&child, arguments.front(), actions.get(), nullptr, arguments.data(), environ);
  if (error != 0) throwError(error, "posix_spawnp");
  writeEnd.close();  // or the end of the output would never come

  ProgramResult result;
  result.output = readAll(readEnd.get());
  result.status = waitFor(child);
  return result;
}

}  // namespace tessarok::makedata
