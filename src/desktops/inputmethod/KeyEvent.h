#pragma once

#include "desktops/inputmethod/Key.h"

namespace tessarok::inputmethod {

/// A key that goes down or up in a text field. A plain value.
struct KeyEvent {
  /// As the program sent it; for handing it back.
  Key key;
  /// The same in the layout of the framework's current input method.
  Key translated;
  bool isRelease = false;
  /// When it was, in the program's own milliseconds.
  int time = 0;
  /// The framework has layouts of its own: a key that types something else there than in its
  /// program reaches that as text.
  bool isTranslating = false;
};

/// What is to become of a key: its program gets it; the same, and the framework looks no further
/// at it; nobody gets it.
enum class KeyAnswer { pass, hide, take };

}  // namespace tessarok::inputmethod
