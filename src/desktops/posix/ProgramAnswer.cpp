#include "desktops/posix/ProgramAnswer.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "desktops/posix/ArgumentList.h"
#include "desktops/posix/DescriptorWait.h"
#include "desktops/posix/Pipe.h"

extern char** environ;

namespace tessarok::posix {

namespace {

using Clock = std::chrono::steady_clock;

/// The process, or -1.
pid_t start(const std::vector<std::string>& command, int output) {
  const auto arguments = argumentsOf(command);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = -1;
  const int error =
      ::posix_spawnp(&process, arguments[0], &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  return error == 0 ? process : -1;
}

int left(Clock::time_point end) {
  const auto time = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
  return time > 0 ? static_cast<int>(time) : 0;
}

/// Everything up to the end of the output; absent when that does not come in time.
std::optional<std::string> readUntil(Clock::time_point end, int descriptor) {
  std::string output;
  while (true) {
    pollfd waiting{descriptor, POLLIN, 0};
    const auto ready = waitFor({&waiting, 1}, left(end));
    if (ready == 0) return std::nullopt;
    std::array<char, 512> chunk{};
    const auto count = ready > 0 ? ::read(descriptor, chunk.data(), chunk.size()) : -1;
    if (count == 0) return output;
    if (count > 0) output.append(chunk.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR && errno != EAGAIN) return std::nullopt;
  }
}

/// Its exit status; absent when a signal has ended it, which happens to it when the time is over.
std::optional<int> statusAt(Clock::time_point end, pid_t process) {
  constexpr int kTurnMilliseconds = 1;
  int status = 0;
  while (::waitpid(process, &status, WNOHANG) == 0) {
    if (left(end) == 0) ::kill(process, SIGKILL);
    static_cast<void>(waitFor({}, kTurnMilliseconds));
  }
  return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

}  // namespace

std::optional<std::string> answerOf(const std::vector<std::string>& command, int milliseconds) {
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
  auto pipe = openPipe(PipeMode::waiting);
  if (!pipe) return std::nullopt;
  const auto process = start(command, pipe->writer.get());
  if (process < 0) return std::nullopt;
  pipe->writer = {};
  auto output = readUntil(end, pipe->reader.get());
  return statusAt(end, process) == 0 ? std::move(output) : std::nullopt;
}

}  // namespace tessarok::posix
