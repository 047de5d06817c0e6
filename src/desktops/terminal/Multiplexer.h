#pragma once

#include <optional>
#include <string>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::terminal {

/// tmux or screen, when this process runs in a window of one. Both answer for the terminal
/// themselves and keep sequences that they do not know. Main thread.
class Multiplexer final {
 public:
  /// Which window this process runs in, by what both leave in the environment; empty outside. A
  /// process that was started in another one, or outside, has another value.
  [[nodiscard]] static std::string window();

  /// The way to the terminal around the window. What that terminal answers is typed into the window
  /// in front, so nothing gets there from another one. Absent outside of both; runs tmux's own
  /// command and waits a second for it.
  [[nodiscard]] static std::optional<Multiplexer> aroundWindow();

  /// Where to write.
  [[nodiscard]] int output() const;
  /// What is to be written for `sequence` to get there.
  [[nodiscard]] std::string wrapped(const std::string& sequence) const;

 private:
  Multiplexer() = default;
  [[nodiscard]] static std::optional<Multiplexer> aroundTmux();
  [[nodiscard]] static std::optional<Multiplexer> aroundScreen();

  /// The terminal that tmux is shown in; screen hands sequences on that are wrapped.
  posix::FileDescriptor terminal_;
};

}  // namespace tessarok::terminal
