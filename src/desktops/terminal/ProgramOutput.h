#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "desktops/terminal/KeyboardModes.h"
#include "desktops/terminal/Screen.h"

namespace tessarok::terminal {

/// Watches what the program writes to the terminal, for what a desktop without eyes has to know:
/// whether a program has the screen for itself, whether a line editor is at work, and what stands
/// around the cursor. Bytes may come in pieces of any size. Main thread.
class ProgramOutput final {
 public:
  void feed(std::string_view bytes);

  /// A program has the whole screen, such as an editor.
  [[nodiscard]] bool isAlternateScreen() const { return alternateScreen_; }
  /// A program wants pastes in brackets, which is what line editors ask for.
  [[nodiscard]] bool wantsBrackets() const { return wantsBrackets_; }
  /// Whether a prompt has been shown since this was asked last.
  [[nodiscard]] bool takePrompt() { return std::exchange(sawPrompt_, false); }
  /// Whether the cursor has been moved to some place of the screen since this was asked last, as
  /// programs do that fill the screen, and line editors do not.
  [[nodiscard]] bool takeAddressing() { return std::exchange(sawAddressing_, false); }

  /// Between two characters and outside of any sequence, so that something else may be written.
  [[nodiscard]] bool isBetweenCharacters() const {
    return state_ == State::text && character_.empty();
  }
  /// What a program asks of this one by a sequence of its own ("ESC ] 7717 ; … BEL"), oldest first.
  [[nodiscard]] std::vector<std::string> takeRequests() { return std::exchange(requests_, {}); }

  /// What takes back the reports of keys that programs have asked for and left on.
  [[nodiscard]] std::string undoingOfKeyboardModes(KeyboardModes::Screen screen) const {
    return keyboardModes_.undoing(screen);
  }

  [[nodiscard]] Screen& screen() { return screen_; }
  [[nodiscard]] const Screen& screen() const { return screen_; }

 private:
  enum class State { text, escape, intermediate, sequence, string, stringEscape };

  void feedText(std::string_view text);
  void feedByte(char byte);
  void feedTextByte(char byte);
  void feedEscape(char byte);
  void feedSequence(char byte);
  void feedString(char byte);
  void endSequence(char final);
  void endString();
  void setPrivateModes(bool on);
  void setPrivateMode(int mode, bool on);
  void setAlternateScreen(bool on);
  void putByte(char byte);

  Screen screen_;
  KeyboardModes keyboardModes_;
  State state_ = State::text;
  /// The last one of an escape sequence.
  char intermediate_ = 0;
  std::string parameters_;
  /// The beginning of a string that is addressed to the terminal.
  std::string string_;
  /// Bytes of a character of which more are to come.
  std::string character_;
  std::vector<std::string> requests_;
  bool alternateScreen_ = false;
  bool wantsBrackets_ = false;
  bool sawPrompt_ = false;
  bool sawAddressing_ = false;
  /// The place of the cursor was kept, to come back to: what happens meanwhile is decoration.
  bool keepsPlace_ = false;
};

}  // namespace tessarok::terminal
