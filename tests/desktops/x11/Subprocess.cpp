#include "tests/desktops/x11/Subprocess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "tests/desktops/x11/Patience.h"
#include "tests/support/Signals.h"

namespace tessarok::testing {

namespace {

bool exists(const std::string& program) {
  if (program.find('/') != std::string::npos) return ::access(program.c_str(), X_OK) == 0;
  std::string path = std::getenv("PATH") == nullptr ? "" : std::getenv("PATH");
  path += ':';
  for (std::size_t from = 0; from < path.size();) {
    const auto end = path.find(':', from);
    const auto file = path.substr(from, end - from) + "/" + program;
    if (::access(file.c_str(), X_OK) == 0) return true;
    from = end + 1;
  }
  return false;
}

/// As a shell is started in it, which then becomes the program.
void enterTerminal(int terminal) {
  ::setsid();
  ::ioctl(terminal, TIOCSCTTY, 0);
}

[[noreturn]] void become(const std::vector<std::string>& command, const Subprocess::Setup& setup) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  // Signals of the terminal in which tests run are for the tests.
  if (setup.terminal < 0) ::setpgid(0, 0);
  if (setup.terminal >= 0) enterTerminal(setup.terminal);
  for (const auto& [name, value] : setup.environment) {
    if (value.empty()) {
      ::unsetenv(name.c_str());
    } else {
      ::setenv(name.c_str(), value.c_str(), 1);
    }
  }
  const int nowhere = ::open("/dev/null", O_RDWR);
  ::dup2(setup.terminal >= 0 ? setup.terminal : nowhere, STDIN_FILENO);
  ::dup2(nowhere, STDOUT_FILENO);
  const int errors =
      setup.errors ? ::open(setup.errors->c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600) : nowhere;
  ::dup2(errors, STDERR_FILENO);
  if (setup.descriptor >= 0) ::fcntl(setup.descriptor, F_SETFD, 0);
  std::vector<char*> arguments;
  auto copies = command;
  for (auto& argument : copies)
    arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  ::execvp(arguments.front(), arguments.data());
  ::_exit(127);
}

}  // namespace

Subprocess::Subprocess(const std::vector<std::string>& command, const std::string& package,
                       const Setup& setup) {
  if (!exists(command.front())) {
    throw std::runtime_error(command.front() + " is missing: install the package " + package);
  }
  process_ = ::fork();
  if (process_ < 0) throw std::runtime_error("cannot fork");
  if (process_ == 0) become(command, setup);
}

Subprocess::~Subprocess() {
  if (process_ <= 0) return;
  sendSignal(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

void Subprocess::send(int signal) const {
  sendSignal(process_, signal);
}

int Subprocess::exitStatus() {
  int status = 0;
  const bool ended = waitUntil([&] { return ::waitpid(process_, &status, WNOHANG) == process_; });
  if (!ended) return -1;
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace tessarok::testing
