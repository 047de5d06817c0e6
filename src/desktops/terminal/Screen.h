#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tessarok::terminal {

/// Where the program's cursor is, and what stands around it. Nobody can ask a terminal for that
/// behind a program's back, so it is followed through what the program writes. Main thread.
///
/// Rows are counted from wherever the program began: only how they lie to each other is known, and
/// after an absolute move not even that, so such a move leads to a row that never was.
class Screen final {
 public:
  /// A place in reading order: rows times columns. The end of a row is the beginning of the next.
  using Place = std::int64_t;

  void setColumns(int columns);
  /// From now on what is written is remembered; before, only the cursor is followed.
  void remember();
  /// Forgets what was written, and remembers nothing more.
  void forget();
  [[nodiscard]] bool remembers() const { return remembers_; }

  void put(char32_t character);
  void control(char byte);
  /// A sequence after CSI: its numbers, separated by semicolons, and its last byte.
  void sequence(std::string_view parameters, char final);
  /// A sequence of ESC and one byte.
  void escape(char byte);
  /// Text without a line's beginning, of which nothing need be known but where it ends.
  void skipToColumn(int column);

  [[nodiscard]] Place cursor() const { return row_ * columns_ + column_; }
  /// Whether `text` stands at `place`, and the cursor right behind it.
  [[nodiscard]] bool endsWith(std::u32string_view text, Place place) const;
  /// Where `text` would begin if it stood right before the cursor; negative when it cannot.
  [[nodiscard]] Place placeBeforeCursor(std::u32string_view text) const;

 private:
  using Row = std::u32string;

  [[nodiscard]] const Row& rowAt(std::int64_t row) const;
  [[nodiscard]] Row& row();
  void moveTo(std::int64_t row, std::int64_t column);
  void jump(std::int64_t column);
  void lineFeed();
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
};

}  // namespace tessarok::terminal
