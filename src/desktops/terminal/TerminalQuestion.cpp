#include "desktops/terminal/TerminalQuestion.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

#include "desktops/posix/DescriptorWait.h"

namespace tessarok::terminal {

namespace {

using Clock = std::chrono::steady_clock;

/// Milliseconds between two looks.
constexpr int kInterval = 5;

/// What ends or stops a program. Nobody else would put the terminal back.
sigset_t endings() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGALRM, SIGTSTP, SIGUSR1, SIGUSR2})
    sigaddset(&signals, signal);
  return signals;
}

/// While it lives, every byte can be read as it comes, and none is shown or means a signal; those
/// that others send wait for its end.
class UneditedInput final {
 public:
  UneditedInput() {
    const auto signals = endings();
    ::pthread_sigmask(SIG_BLOCK, &signals, &former_);
    if (::tcgetattr(STDIN_FILENO, &settings_) != 0) return;
    auto unedited = settings_;
    unedited.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
    unedited.c_cc[VMIN] = 1;
    unedited.c_cc[VTIME] = 0;
    isSet_ = set(unedited);
  }
  UneditedInput(const UneditedInput&) = delete;
  UneditedInput& operator=(const UneditedInput&) = delete;
  ~UneditedInput() {
    if (isSet_) set(settings_);
    ::pthread_sigmask(SIG_SETMASK, &former_, nullptr);
  }

  [[nodiscard]] bool isSet() const { return isSet_; }

 private:
  // TCSANOW: what was typed ahead stays, and a screen that was stopped holds nothing up.
  static bool set(const termios& settings) {
    while (::tcsetattr(STDIN_FILENO, TCSANOW, &settings) != 0) {
      if (errno != EINTR) return false;
    }
    return true;
  }

  sigset_t former_{};
  termios settings_{};
  bool isSet_ = false;
};

std::size_t bytesToRead() {
  int count = 0;
  return ::ioctl(STDIN_FILENO, FIONREAD, &count) == 0 && count > 0 ? static_cast<std::size_t>(count)
                                                                   : 0;
}

/// Adds what is there; false when nothing is, against expectation.
bool readInto(std::string& bytes) {
  std::array<char, 4096> chunk;
  const auto count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
  if (count > 0) bytes.append(chunk.data(), static_cast<std::size_t>(count));
  return count > 0;
}

bool isOurs() {
  // Below 0 for a terminal that controls no jobs.
  const auto foreground = ::tcgetpgrp(STDIN_FILENO);
  return foreground < 0 || foreground == ::getpgrp();
}

}  // namespace

std::optional<TerminalQuestion::Answer> TerminalQuestion::ask() const {
  if (!isOurs()) return std::nullopt;
  const UneditedInput unedited;
  if (!unedited.isSet()) return std::nullopt;
  // No answer is shorter than what stands around it, and it comes in one piece; so much in so
  // short a time is no typing.
  auto least = before.size() + after.size();
  auto there = bytesToRead();
  if (::write(output, text.data(), text.size()) < 0) return std::nullopt;
  const auto deadline = Clock::now() + std::chrono::milliseconds(patience);
  std::string bytes;
  while (Clock::now() < deadline) {
    const auto now = bytesToRead();
    if (now < std::exchange(there, now) + least) {
      static_cast<void>(posix::waitFor({}, kInterval));
      continue;
    }
    if (!readInto(bytes)) return std::nullopt;
    there = 0;
    const auto begin = bytes.find(before);
    if (begin == std::string::npos) continue;
    // The rest of it, if it did not come in one piece after all.
    least = 1;
    const auto end = bytes.find(after, begin + before.size());
    if (end == std::string::npos) continue;
    const auto first = begin + before.size();
    return Answer{.text = bytes.substr(first, end - first),
                  .keys = bytes.substr(0, begin) + bytes.substr(end + after.size())};
  }
  return std::nullopt;
}

}  // namespace tessarok::terminal
