#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/terminal/Screen.h"

namespace tessarok::terminal {

/// What the program got for the line that the person is typing, and whether it shows it. Main
/// thread.
///
/// Why this is needed: behind ssh or another inner terminal nothing tells a prompt for a password
/// from a line editor, except that the one does not show what is typed.
///
/// Behaviour: a character counts as shown when everything typed since the line began stands on the
/// screen in this order, with the cursor right behind it. It has to begin where the cursor was when
/// the first character was typed. Where that place is not known, because keys were pressed before
/// the program had answered the ones before, two characters at least have to stand before a cursor
/// that rests. What other programs write into the same terminal moves the cursor and shows nothing.
class TypedLine final {
 public:
  /// `screen` outlives this object.
  explicit TypedLine(Screen& screen) : screen_(screen) {}

  /// The program got a character, or had the last one erased.
  void add(char32_t character);
  void erase();
  /// A key whose effect is not known: what follows is looked at by itself.
  void breakOff();
  /// The line has ended, and with it whatever was known of it.
  void end();
  /// The program, or somebody else, has written something.
  void noteOutput();
  /// A character of this line was not shown, so none of it may be looked at.
  void hide();
  [[nodiscard]] bool isHidden() const { return isHidden_; }

  /// Everything typed is shown. True of nothing.
  [[nodiscard]] bool isShown();
  /// It seems to be, and will be if nothing has changed after a moment: call `settle` then.
  [[nodiscard]] bool seemsShown() const;
  void settle();
  /// There are letters that are not known to be shown.
  [[nodiscard]] bool hasUnshownLetters() const { return unshownLetters_ > 0; }
  /// How many letters of this line were shown.
  [[nodiscard]] std::size_t lettersShown() const { return lettersShown_; }

  /// What was typed since the line began or was broken off.
  [[nodiscard]] std::u32string_view text() const { return text_; }
  /// Nothing of the line was broken off.
  [[nodiscard]] bool isWhole() const { return isWhole_; }

 private:
  void markShown();
  void beginPart();
  void followProgram();

  Screen& screen_;
  std::u32string text_;
  /// Where the text begins on the screen; absent while that is not known.
  std::optional<Screen::Place> place_;
  bool isShown_ = true;
  bool isHidden_ = false;
  bool isWhole_ = true;
  /// Something was written since the last key whose effect is not known.
  bool sawOutput_ = false;
  std::size_t unshownLetters_ = 0;
  std::size_t lettersShown_ = 0;
};

}  // namespace tessarok::terminal
