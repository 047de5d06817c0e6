#pragma once

#include <string_view>

namespace tessarok::terminal {

/// One thing that came from the person's terminal: a key, part of a paste, or bytes that are
/// neither. The bytes of all items in order are exactly the bytes that came in.
struct InputItem {
  enum class Kind {
    /// A scalar that prints, Space included.
    character,
    /// A control character or DEL: a key held with Control, or Return, Tab, Backspace, Escape.
    control,
    /// A character or a control character after ESC: a key held with Alt.
    meta,
    /// A CSI or SS3 sequence: cursor and function keys, mouse and focus reports.
    sequence,
    /// Text that was not typed.
    paste,
    /// The beginning or the end of a bracketed paste.
    pasteBracket,
    /// An answer of the terminal to a question of the program; no key.
    answer,
    /// Bytes that are no UTF-8.
    unknown,
  };

  Kind kind = Kind::unknown;
  /// A view into the decoder, good until bytes are next appended to it.
  std::string_view bytes;
  /// For `character`, `control` and `meta`.
  char32_t scalar = 0;

  [[nodiscard]] bool isLetterOrNumber() const;
  [[nodiscard]] bool isReturn() const;
  /// Whether it ends the line, whatever the program does with it: Return, and Control with C, D, Z
  /// or the backslash.
  [[nodiscard]] bool endsLine() const;
};

}  // namespace tessarok::terminal
