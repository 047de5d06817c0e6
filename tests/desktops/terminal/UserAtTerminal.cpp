#include "tests/desktops/terminal/UserAtTerminal.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <utmp.h>

#include "tests/support/Signals.h"

namespace tessarok::testing {

namespace {

using Clock = std::chrono::steady_clock;

/// Much longer than anything takes on a busy machine.
constexpr auto kPatience = std::chrono::seconds(30);
constexpr int kTurnMilliseconds = 50;

[[noreturn]] void runProgram(const std::vector<std::string>& command,
                             const std::filesystem::path& home,
                             const std::filesystem::path& resources) {
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("TERM", "xterm", 1);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ::setenv("PS1", "ready> ", 1);
  // A shell that outlives the test would write into a home that is gone.
  ::setenv("HISTFILE", "/dev/null", 1);
  for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "TESSAROK_RES", "INPUTRC", "ENV",
                           "TESSAROK_TERMINAL"}) {
    ::unsetenv(name);
  }
  std::vector<std::string> words = {TESSAROK_PROGRAM, "--resources", resources.string(), "terminal",
                                    "--"};
  words.insert(words.end(), command.begin(), command.end());
  std::vector<char*> arguments;
  for (auto& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(125);
}

termios typicalSettings(char erase) {
  termios settings{};
  // What is typed before the program has the terminal is erased by the character, as everywhere
  // today.
  settings.c_iflag = ICRNL | IXON | IUTF8;
  settings.c_oflag = OPOST | ONLCR;
  settings.c_cflag = CS8 | CREAD | B38400;
  settings.c_lflag = ISIG | ICANON | IEXTEN | ECHO | ECHOE | ECHOK | ECHOCTL | ECHOKE;
  settings.c_cc[VINTR] = 3;
  settings.c_cc[VQUIT] = 28;
  settings.c_cc[VERASE] = static_cast<cc_t>(erase);
  settings.c_cc[VKILL] = 21;
  settings.c_cc[VEOF] = 4;
  settings.c_cc[VWERASE] = 23;
  settings.c_cc[VLNEXT] = 22;
  settings.c_cc[VSUSP] = 26;
  settings.c_cc[VMIN] = 1;
  return settings;
}

}  // namespace

UserAtTerminal::UserAtTerminal(const std::vector<std::string>& command)
    : UserAtTerminal(command, Setup()) {}

UserAtTerminal::UserAtTerminal(const std::vector<std::string>& command, const Setup& setup)
    : home_(setup.home.empty() ? folder_.path() : setup.home) {
  auto settings = typicalSettings(setup.erase);
  winsize size{setup.rows, setup.columns, 0, 0};
  if (::openpty(&terminal_, &keeper_, nullptr, &settings, &size) != 0) {
    throw std::runtime_error("no pseudo-terminal");
  }
  ::fcntl(terminal_, F_SETFD, FD_CLOEXEC);
  ::fcntl(terminal_, F_SETFL, O_RDWR | O_NONBLOCK);
  formerSettings_ = this->settings();
  process_ = ::fork();
  if (process_ == 0) {
    ::login_tty(keeper_);
    runProgram(command, home_, setup.resources);
  }
}

UserAtTerminal::~UserAtTerminal() {
  if (process_ > 0) {
    sendSignal(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  hangUp();
}

void UserAtTerminal::type(std::string_view keys) {
  const auto deadline = Clock::now() + kPatience;
  while (!keys.empty() && Clock::now() < deadline) {
    const auto count = ::write(terminal_, keys.data(), keys.size());
    if (count > 0) keys.remove_prefix(static_cast<std::size_t>(count));
    if (count <= 0) readScreen(1);
    while (readScreen(0)) {
    }
  }
}

std::size_t UserAtTerminal::typeUntilStuck(std::string_view keys) {
  constexpr int kStuckMilliseconds = 500;
  std::size_t taken = 0;
  pollfd waiting{terminal_, POLLOUT, 0};
  while (taken < keys.size() && ::poll(&waiting, 1, kStuckMilliseconds) > 0) {
    const auto count = ::write(terminal_, keys.data() + taken, keys.size() - taken);
    if (count > 0) taken += static_cast<std::size_t>(count);
  }
  return taken;
}

bool UserAtTerminal::sees(std::string_view text) {
  const auto deadline = Clock::now() + kPatience;
  while (Clock::now() < deadline) {
    const auto found = screen_.find(text, seen_);
    if (found != std::string::npos) {
      seen_ = found + text.size();
      return true;
    }
    readScreen(kTurnMilliseconds);
  }
  return false;
}

bool UserAtTerminal::readScreen(int milliseconds) {
  pollfd waiting{terminal_, POLLIN, 0};
  if (::poll(&waiting, 1, milliseconds) <= 0) return false;
  char chunk[16 * 1024];
  const auto count = ::read(terminal_, chunk, sizeof chunk);
  if (count <= 0) return false;
  screen_.append(chunk, static_cast<std::size_t>(count));
  return true;
}

void UserAtTerminal::resize(unsigned short rows, unsigned short columns) {
  const winsize size{rows, columns, 0, 0};
  ::ioctl(terminal_, TIOCSWINSZ, &size);
}

void UserAtTerminal::send(int signal) const {
  sendSignal(process_, signal);
}

void UserAtTerminal::hangUp() {
  if (terminal_ < 0) return;
  ::close(std::exchange(keeper_, -1));
  ::close(std::exchange(terminal_, -1));
}

std::optional<int> UserAtTerminal::endedStatus() {
  int status = 0;
  if (::waitpid(process_, &status, WNOHANG) != process_) return std::nullopt;
  process_ = -1;
  while (readScreen(0)) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void UserAtTerminal::stopScreen() const {
  ::tcflow(keeper_, TCOOFF);
}

bool UserAtTerminal::programHasEnded() const {
  const auto process = std::to_string(process_);
  const auto deadline = Clock::now() + kPatience;
  while (Clock::now() < deadline) {
    if (contentOf("/proc/" + process + "/task/" + process + "/children").empty()) return true;
    ::poll(nullptr, 0, kTurnMilliseconds);
  }
  return false;
}

int UserAtTerminal::exitStatus() {
  const auto deadline = Clock::now() + kPatience;
  while (Clock::now() < deadline) {
    if (const auto status = endedStatus()) return *status;
    if (terminal_ >= 0) readScreen(kTurnMilliseconds);
  }
  return -1;
}

int UserAtTerminal::exitStatusUnread() {
  const auto deadline = Clock::now() + kPatience;
  while (Clock::now() < deadline) {
    if (const auto status = endedStatus()) return *status;
    ::poll(nullptr, 0, kTurnMilliseconds);
  }
  return -1;
}

termios UserAtTerminal::settings() const {
  termios settings{};
  ::tcgetattr(keeper_, &settings);
  return settings;
}

std::filesystem::path UserAtTerminal::learned() const {
  return home() / ".local" / "share" / "Tessarok";
}

std::string contentOf(const std::filesystem::path& file) {
  if (!std::filesystem::is_regular_file(file)) return {};
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool becomes(const std::filesystem::path& file, std::string_view content) {
  const auto deadline = Clock::now() + kPatience;
  while (Clock::now() < deadline) {
    if (contentOf(file) == content) return true;
    ::poll(nullptr, 0, 1);
  }
  return false;
}

}  // namespace tessarok::testing
