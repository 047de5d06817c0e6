#include "desktops/terminal/OuterTerminal.h"

#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

#include "desktops/posix/Translation.h"

namespace tessarok::terminal {

namespace {

/// The terminal of standard output, opened once more. Not to wait is a property of an open file,
/// and the one of standard output is shared with the shell, which would be surprised.
posix::FileDescriptor openOutput() {
  char name[256];
  if (::ttyname_r(STDOUT_FILENO, name, sizeof name) != 0) return {};
  return posix::FileDescriptor(::open(name, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

/// Failure is for good: there is nothing else to do then.
void applySettings(int when, const termios& settings) {
  while (::tcsetattr(STDIN_FILENO, when, &settings) != 0 && errno == EINTR) {
  }
}

/// Waits, stopped as a job, until the terminal is this program's. In the background its settings
/// are those of a shell that is editing a line, and with these nothing could be typed.
void waitForForeground() {
  // Where nobody could continue a stopped program, the signal does nothing.
  constexpr int kMostSignals = 16;
  for (int i = 0; i < kMostSignals; ++i) {
    const auto foreground = ::tcgetpgrp(STDIN_FILENO);
    // Absent for a terminal that controls no jobs.
    if (foreground < 0 || foreground == ::getpgrp()) return;
    ::kill(0, SIGTTIN);
  }
}

}  // namespace

OuterTerminal::OuterTerminal() : output_(openOutput()) {
  // A screen that nothing can be written to would be found out by the first text for it.
  if ((::fcntl(STDOUT_FILENO, F_GETFL) & O_ACCMODE) == O_RDONLY) {
    throw std::runtime_error(posix::translated("standard output cannot be written"));
  }
  waitForForeground();
  if (::tcgetattr(input(), &settings_) != 0) {
    throw std::system_error(errno, std::generic_category(), posix::translated("standard input"));
  }
}

OuterTerminal::~OuterTerminal() {
  restore();
}

bool OuterTerminal::isStandardInput() {
  return ::isatty(STDIN_FILENO) == 1;
}

int OuterTerminal::input() {
  return STDIN_FILENO;
}

int OuterTerminal::output() const {
  return output_.isOpen() ? output_.get() : STDOUT_FILENO;
}

winsize OuterTerminal::size() const {
  winsize size{};
  ::ioctl(input(), TIOCGWINSZ, &size);
  return size;
}

void OuterTerminal::makeRaw() {
  auto raw = settings_;
  ::cfmakeraw(&raw);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  isRaw_ = true;
  // Not TCSAFLUSH: what was typed ahead belongs to the program.
  applySettings(TCSADRAIN, raw);
}

void OuterTerminal::restore() {
  if (!isRaw_) return;
  isRaw_ = false;
  // Not TCSADRAIN: a screen that was stopped, or has gone, would hold the program's end up.
  applySettings(TCSANOW, settings_);
}

}  // namespace tessarok::terminal
