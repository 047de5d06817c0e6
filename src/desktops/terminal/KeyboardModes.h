#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tessarok::terminal {

/// Which reports of keys a program has asked the terminal for, to be taken back when the program
/// ends without doing so: a shell would get sequences for Control and a letter. Main thread.
class KeyboardModes final {
 public:
  enum class Screen { main, alternate };

  /// A sequence "ESC [ parameters final" of the program.
  void note(std::string_view parameters, char final, Screen screen);
  /// The program has put the terminal back to its beginnings.
  void reset() { *this = {}; }
  /// What undoes them on the screen that is shown; empty where there is nothing to undo. Each
  /// screen of the kitty keyboard protocol has a stack of its own.
  [[nodiscard]] std::string undoing(Screen screen) const;

 private:
  /// What the program has put on the stack of each screen.
  std::array<int, 2> pushed_{};
  /// Whether it has changed what was under these.
  std::array<bool, 2> changed_{};
  bool modifiesOtherKeys_ = false;
};

}  // namespace tessarok::terminal
