#pragma once

#include <termios.h>

namespace tessarok::terminal {

/// How the program's side of the pseudo-terminal is set. The program may change it at any time, so
/// it is read before every key.
class PtyModes final {
 public:
  explicit PtyModes(const termios& settings) : settings_(settings) {}

  /// The kernel shows what is typed.
  [[nodiscard]] bool echoes() const { return (settings_.c_lflag & ECHO) != 0; }
  /// A password is being asked for: the kernel collects a line without showing it.
  [[nodiscard]] bool isSecret() const { return !echoes() && (settings_.c_lflag & ICANON) != 0; }
  /// The program reads key by key and shows itself what it likes: a line editor, a program that
  /// fills the screen, or a prompt for a few secret characters; which one cannot be told.
  [[nodiscard]] bool isRaw() const { return !echoes() && (settings_.c_lflag & ICANON) == 0; }
  /// The kernel shows every key, and no erase character takes one back: it hands every key on at
  /// once, or has no such character, or erases bytes, which leaves half a letter.
  [[nodiscard]] bool takesNothingBack() const;
  /// The character that erases the one before it; the usual one where there is none.
  [[nodiscard]] char erase() const;
  /// Whether a control character takes the word before the cursor away, or the whole line.
  [[nodiscard]] bool clearsWord(char control) const;

 private:
  termios settings_;
};

}  // namespace tessarok::terminal
