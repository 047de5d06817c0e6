#pragma once

#include "desktops/terminal/InputItem.h"
#include "desktops/terminal/OuterLayout.h"
#include "desktops/terminal/PtyModes.h"
#include "desktops/terminal/TerminalEvent.h"

namespace tessarok::terminal {

/// Makes key events of input items. Modifiers other than Shift show only on control characters,
/// on characters after ESC and in the sequences of special keys. Main thread.
class KeyReader final {
 public:
  explicit KeyReader(OuterLayout& outer) : outer_(outer) {}

  /// Makes `event` the press of the item's key, with the bytes that it sends to the program. The
  /// terminal's own layout may change by it.
  void read(const InputItem& item, const PtyModes& modes, TerminalEvent& event);
  /// Makes `event` a key of which nothing is known and which sends nothing: after it the word
  /// under the cursor is not known either.
  static void readUnknown(TerminalEvent& event);
  /// Makes `event` a quotation mark, whatever its key types in the current layout: one behind which
  /// a word begins, or one that ends it.
  static void readOpening(const InputItem& item, TerminalEvent& event);
  static void readClosing(const InputItem& item, TerminalEvent& event);
  /// Makes `event` one that sends nothing and behind which a word begins.
  static void readStart(TerminalEvent& event);
  /// Makes `event` the key that types a character in a layout; it sends nothing.
  static void readShown(char32_t character, Language language, TerminalEvent& event);

 private:
  void readCharacter(const InputItem& item, TerminalEvent& event);

  OuterLayout& outer_;
};

}  // namespace tessarok::terminal
