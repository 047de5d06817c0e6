#include "tests/support/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Signals.h"

namespace tessarok::testing {

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

constexpr int kCannotRun = 127;

File temporaryFile() {
  File file(std::tmpfile(), &std::fclose);
  if (!file) throw std::runtime_error("cannot make a temporary file");
  return file;
}

std::string contentOf(std::FILE* file) {
  std::rewind(file);
  std::string text;
  char chunk[4096];
  while (const auto count = std::fread(chunk, 1, sizeof chunk, file))
    text.append(chunk, count);
  return text;
}

/// What tests compare is English, whatever the developer's own language is.
void speakEnglish() {
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ::unsetenv("LANGUAGE");
}

/// Turns the child of a fork into the program.
[[noreturn]] void become(const std::vector<std::string>& arguments, int in, int out, int err) {
  std::signal(SIGPIPE, SIG_DFL);
  ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  if (err >= 0) ::dup2(err, STDERR_FILENO);
  std::vector<char*> pointers;
  std::string program = TESSAROK_PROGRAM;
  auto copies = arguments;
  pointers.push_back(program.data());
  for (auto& argument : copies)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  ::execv(program.c_str(), pointers.data());
  ::_exit(kCannotRun);
}

int statusOf(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) throw std::runtime_error("cannot wait for the program");
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

ProgramRun runToEnd(const std::vector<std::string>& arguments, int in,
                    const std::vector<std::pair<std::string, std::string>>& environment,
                    const std::optional<std::string>& folder) {
  const auto out = temporaryFile();
  const auto err = temporaryFile();
  const auto process = ::fork();
  if (process < 0) throw std::runtime_error("cannot fork");
  if (process == 0) {
    speakEnglish();
    for (const auto& [name, value] : environment)
      ::setenv(name.c_str(), value.c_str(), 1);
    if (folder && ::chdir(folder->c_str()) != 0) ::_exit(kCannotRun);
    become(arguments, in, ::fileno(out.get()), ::fileno(err.get()));
  }
  ProgramRun run;
  run.status = statusOf(process);
  run.out = contentOf(out.get());
  run.err = contentOf(err.get());
  return run;
}

}  // namespace

ProgramRun runProgram(const std::vector<std::string>& arguments, std::string_view input,
                      const std::vector<std::pair<std::string, std::string>>& environment,
                      const std::optional<std::string>& folder) {
  const auto in = temporaryFile();
  if (!input.empty()) std::fwrite(input.data(), 1, input.size(), in.get());
  std::rewind(in.get());
  return runToEnd(arguments, ::fileno(in.get()), environment, folder);
}

ProgramRun runProgramReading(const std::string& path, const std::vector<std::string>& arguments) {
  const int in = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) throw std::runtime_error("cannot open " + path);
  const auto run = runToEnd(arguments, in, {}, std::nullopt);
  ::close(in);
  return run;
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
  int toChild[2];
  int fromChild[2];
  // The ends of other children's pipes must not stay open in this one.
  if (::pipe2(toChild, O_CLOEXEC) != 0 || ::pipe2(fromChild, O_CLOEXEC) != 0) {
    throw std::runtime_error("cannot make a pipe");
  }
  // Writing to a program that has ended is an answer, not an accident.
  std::signal(SIGPIPE, SIG_IGN);
  process_ = ::fork();
  if (process_ < 0) throw std::runtime_error("cannot fork");
  if (process_ == 0) {
    speakEnglish();
    become(arguments, toChild[0], fromChild[1], -1);
  }
  ::close(toChild[0]);
  ::close(fromChild[1]);
  input_ = toChild[1];
  output_ = fromChild[0];
}

ChildProcess::~ChildProcess() {
  if (process_ > 0) kill();
  if (input_ >= 0) ::close(input_);
  ::close(output_);
}

bool ChildProcess::send(std::string_view lines) {
  while (!lines.empty()) {
    const auto written = ::write(input_, lines.data(), lines.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    lines.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::optional<std::string> ChildProcess::receive() {
  while (true) {
    if (const auto end = received_.find('\n'); end != std::string::npos) {
      auto line = received_.substr(0, end);
      received_.erase(0, end + 1);
      return line;
    }
    char chunk[4096];
    const auto count = ::read(output_, chunk, sizeof chunk);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    received_.append(chunk, static_cast<std::size_t>(count));
  }
}

int ChildProcess::finish() {
  ::close(std::exchange(input_, -1));
  return wait();
}

void ChildProcess::kill() {
  sendSignal(process_, SIGKILL);
  wait();
}

int ChildProcess::wait() {
  return statusOf(std::exchange(process_, -1));
}

}  // namespace tessarok::testing
