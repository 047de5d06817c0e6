#pragma once

namespace tessarok::terminal {

/// What a corrected terminal leaves in the environment of everything that runs in it
/// (TESSAROK_TERMINAL), so that a second corrector does not fix every word once more. Main thread.
class CorrectedMark final {
 public:
  enum class Place {
    none,
    /// This process runs in a window of tmux or screen that was opened in a corrected terminal, at
    /// least when their server was started. To that one tmux is a program that fills the screen.
    around,
    /// Nothing is between this process and the corrected terminal.
    here,
  };

  [[nodiscard]] static Place find();
  /// For what is started from now on.
  static void leave();
};

}  // namespace tessarok::terminal
