#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tessarok::terminal {

/// Where the program's cursor is, and what stands around it. Nobody can ask a terminal for that
/// behind a program's back, so it is followed through what the program writes. Main thread.
///
/// Rows are counted from wherever the program began: only how they lie to each other is known, and
/// after an absolute move not even that, so such a move leads to a row that never was. Only while a
/// program fills the screen are they those of the terminal, counted from 0, and all of it is
/// remembered.
class Screen final {
 public:
  /// A place in reading order: rows times columns. The end of a row is the beginning of the next.
  using Place = std::int64_t;

  void setSize(int rows, int columns);
  /// A program has begun to fill the screen, or has ended to. What stood there is not known.
  void fill();
  void endFilling();
  [[nodiscard]] bool isFilled() const { return isFilled_; }
  /// From now on what is written is remembered; before, only the cursor is followed.
  void remember();
  /// Forgets what was written, and remembers nothing more.
  void forget();
  [[nodiscard]] bool remembers() const { return remembers_ || isFilled_; }

  void put(char32_t character);
  void control(char byte);
  /// A sequence after CSI: its numbers, separated by semicolons, and its last byte.
  void sequence(std::string_view parameters, char final);
  /// A sequence of ESC and one byte.
  void escape(char byte);
  /// A sequence of ESC, "(" or ")", and the character set that is to be there.
  void designate(char slot, char set);
  /// A private mode was switched.
  void setPrivateMode(int mode, bool on);
  /// Text without a line's beginning, of which nothing need be known but where it ends.
  void skipToColumn(int column);

  [[nodiscard]] Place cursor() const { return row_ * columns_ + column_; }
  /// Whether `text` stands at `place`, and the cursor right behind it.
  [[nodiscard]] bool endsWith(std::u32string_view text, Place place) const;
  /// Where `text` would begin if it stood right before the cursor; negative when it cannot.
  [[nodiscard]] Place placeBeforeCursor(std::u32string_view text) const;
  /// What stands before the cursor in its row, up to the first space or whatever else is no text,
  /// and at most `longest` characters of it; empty where the screen is not known.
  [[nodiscard]] std::u32string wordBeforeCursor(std::size_t longest) const;
  /// The row from the cursor on, without spaces at its end.
  [[nodiscard]] std::u32string restOfRow() const;

 private:
  using Row = std::u32string;

  [[nodiscard]] const Row& rowAt(std::int64_t row) const;
  [[nodiscard]] Row& row();
  void moveTo(std::int64_t row, std::int64_t column);
  void jump(std::int64_t column);
  void moveToRow(std::int64_t row, std::int64_t column);
  void lineFeed();
  void reverseLineFeed();
  void scroll(std::int64_t top, std::int64_t rows);
  void setScrolling(std::int64_t first, std::int64_t last);
  void setMargins(std::int64_t top, std::int64_t bottom);
  void mark();
  [[nodiscard]] char32_t drawn(char32_t character) const;
  void eraseLine(int how);
  void eraseDisplay(int how);

  std::map<std::int64_t, Row> rows_;
  bool remembers_ = false;
  std::int64_t columns_ = 80;
  std::int64_t row_ = 0;
  /// Equal to `columns_` behind the last character of a full row.
  std::int64_t column_ = 0;
  std::int64_t savedRow_ = 0;
  std::int64_t savedColumn_ = 0;
  bool inserts_ = false;
  char32_t last_ = U' ';
  bool isFilled_ = false;
  /// Of the terminal; what follows has a meaning only while the screen is filled.
  std::int64_t height_ = 24;
  /// The rows that scroll, the last one included.
  std::int64_t top_ = 0;
  std::int64_t bottom_ = 23;
  /// A character that does not fit into the row begins the next one.
  bool wraps_ = true;
  /// The two character sets, and which one is in force: letters may stand for lines.
  bool drawsLines_[2] = {false, false};
  std::size_t set_ = 0;
};

}  // namespace tessarok::terminal
