#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/posix/WriteQueue.h"
#include "desktops/terminal/Screen.h"

namespace tessarok::terminal {

/// A text on a filled screen that is erased and typed anew. Main thread.
///
/// Why this is needed: of a program that fills the screen nobody knows what it does with a key. In
/// an editor that waits for commands a Backspace moves the cursor, and letters would be commands.
///
/// Behaviour: first only the Backspaces are sent. The new text follows when the old one has gone
/// from the screen and the cursor stands where it began; else never. An editor that erases only
/// what was typed last gets that again.
class Retyping final {
 public:
  /// Both outlive this object.
  Retyping(Screen& screen, posix::WriteQueue& toProgram) : screen_(screen), toProgram_(toProgram) {}

  /// Erases a text that stands before the cursor, to type another one in its place; false when it
  /// does not stand there, and then nothing was sent.
  [[nodiscard]] bool begin(std::u32string_view old, char erase, std::string text);
  /// The program has written something.
  void noteOutput();
  /// Keys have to wait, because the new text has to come before them.
  [[nodiscard]] bool isUnderWay() const { return text_ && !isLate_; }
  /// They have waited long enough. The text still comes if the old one goes before the next key.
  void stopWaiting();
  /// There is another key now.
  void giveUp() { text_.reset(); }

 private:
  [[nodiscard]] bool isErasedTo(std::size_t length) const;

  Screen& screen_;
  posix::WriteQueue& toProgram_;
  std::optional<std::string> text_;
  bool isLate_ = false;
  /// Where the old text began, and what stood behind it.
  Screen::Place place_ = 0;
  std::u32string old_;
  std::u32string rest_;
};

}  // namespace tessarok::terminal
