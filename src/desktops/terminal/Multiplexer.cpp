#include "desktops/terminal/Multiplexer.h"

#include <array>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/ProgramAnswer.h"

namespace tessarok::terminal {

namespace {

/// Milliseconds in which a server that is not stuck has answered.
constexpr int kPatience = 1000;

std::string variable(const char* name) {
  return posix::personsVariable(name).value_or("");
}

}  // namespace

std::string Multiplexer::window() {
  std::string window;
  // Panes and windows are numbered by each server.
  for (const char* name : {"TMUX", "TMUX_PANE", "STY", "WINDOW"}) {
    const auto value = variable(name);
    if (!value.empty()) window += (window.empty() ? "" : " ") + value;
  }
  return window;
}

std::optional<Multiplexer> Multiplexer::aroundWindow() {
  // One may run in the other, and leaves its variables there.
  auto around = aroundTmux();
  return around ? std::move(around) : aroundScreen();
}

std::optional<Multiplexer> Multiplexer::aroundTmux() {
  // Something else than keys and a screen is spoken with a client in control mode.
  std::array<char, 256> own{};
  if (variable("TMUX_PANE").empty() || ::ttyname_r(STDIN_FILENO, own.data(), own.size()) != 0)
    return std::nullopt;
  const auto answer = posix::answerOf(
      {"tmux", "display-message", "-p", "-t", variable("TMUX_PANE"),
       "#{client_control_mode}#{pane_active}#{window_active} #{pane_tty} #{client_tty}"},
      kPatience);
  if (!answer) return std::nullopt;
  const auto line = answer->substr(0, answer->find('\n'));
  const auto inFront = "011 " + std::string(own.data()) + " ";
  if (!line.starts_with(inFront)) return std::nullopt;
  Multiplexer around;
  around.terminal_ = posix::FileDescriptor(
      ::open(line.c_str() + inFront.size(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!around.terminal_.isOpen() || ::isatty(around.terminal_.get()) == 0) return std::nullopt;
  return around;
}

std::optional<Multiplexer> Multiplexer::aroundScreen() {
  if (variable("STY").empty()) return std::nullopt;
  // Of a window that nobody looks at it hands nothing on.
  return Multiplexer();
}

int Multiplexer::output() const {
  return terminal_.isOpen() ? terminal_.get() : STDIN_FILENO;
}

std::string Multiplexer::wrapped(const std::string& sequence) const {
  return terminal_.isOpen() ? sequence : "\x1bP" + sequence + "\x1b\\";
}

}  // namespace tessarok::terminal
