#include "desktops/terminal/Multiplexer.h"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::terminal {

namespace {

std::string variable(const char* name) {
  return posix::personsVariable(name).value_or("");
}

/// The first line that a shell's command prints; empty when it fails.
std::string lineOf(const char* command) {
  auto* const pipe = ::popen(command, "r");
  if (pipe == nullptr) return {};
  std::array<char, 512> chunk{};
  std::string output;
  while (const auto count = std::fread(chunk.data(), 1, chunk.size(), pipe))
    output.append(chunk.data(), count);
  if (::pclose(pipe) != 0) return {};
  return output.substr(0, output.find('\n'));
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
  const auto line = lineOf(
      "tmux display-message -p -t \"$TMUX_PANE\" "
      "'#{client_control_mode}#{pane_active}#{window_active} #{pane_tty} #{client_tty}' 2> "
      "/dev/null");
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
