// Not followed: scrolling and whole lines that are inserted or deleted, unless a program fills the
// screen; origin mode, margins at the sides, and tabulators other than every eight columns. A
// program that uses them where a person types is not believed to have shown what was typed, and its
// words stay as they are.

#include "desktops/terminal/Screen.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "text/Text.h"

namespace tessarok::terminal {

namespace {

constexpr char32_t kNothing = U' ';
/// The second half of a wide character.
constexpr char32_t kSecondHalf = U'\0';
/// What is no text: lines that are drawn, and characters with marks on them.
constexpr char32_t kDrawing = U'\uFFFC';
constexpr std::int64_t kTabulator = 8;
/// More rows than a line that is being typed takes.
constexpr std::size_t kMostRows = 64;
/// An absolute move leads so many rows on.
constexpr std::int64_t kJump = 100000;
/// A terminal is never wider; numbers in sequences are no larger.
constexpr std::int64_t kMost = 10000;

/// The numbers of a sequence; 0 for those that are left out.
std::array<std::int64_t, 2> numbersOf(std::string_view parameters) {
  std::array<std::int64_t, 2> numbers{};
  const auto* next = parameters.data();
  const auto* const end = next + parameters.size();
  for (auto& number : numbers) {
    next = std::from_chars(next, end, number).ptr;
    number = std::clamp<std::int64_t>(number, 0, kMost);
    next = std::find(next, end, ';');
    if (next == end) break;
    ++next;
  }
  return numbers;
}

}  // namespace

void Screen::setSize(int rows, int columns) {
  if (rows > 0 && rows != height_) {
    height_ = rows;
    setMargins(0, height_ - 1);
    if (isFilled_) rows_.clear();
    if (isFilled_) row_ = std::min(row_, height_ - 1);
  }
  if (columns <= 0 || columns == columns_) return;
  columns_ = columns;
  // Terminals differ in what they do with the text.
  rows_.clear();
  if (!isFilled_) return jump(std::min<std::int64_t>(column_, columns_ - 1));
  column_ = std::min(column_, columns_ - 1);
}

void Screen::fill() {
  if (std::exchange(isFilled_, true)) return;
  rows_.clear();
  row_ = 0;
  setMargins(0, height_ - 1);
  wraps_ = true;
  drawsLines_[0] = drawsLines_[1] = false;
  set_ = 0;
}

void Screen::endFilling() {
  if (!std::exchange(isFilled_, false)) return;
  rows_.clear();
  jump(0);
}

void Screen::remember() {
  remembers_ = true;
}

void Screen::forget() {
  remembers_ = false;
  if (!isFilled_) rows_.clear();
}

const Screen::Row& Screen::rowAt(std::int64_t row) const {
  static const Row empty;
  const auto found = rows_.find(row);
  return found == rows_.end() ? empty : found->second;
}

Screen::Row& Screen::row() {
  if (!isFilled_ && rows_.size() > kMostRows) rows_.erase(rows_.begin());
  auto& row = rows_[row_];
  if (row.size() < static_cast<std::size_t>(columns_)) {
    row.resize(static_cast<std::size_t>(columns_), kNothing);
  }
  return row;
}

void Screen::moveTo(std::int64_t row, std::int64_t column) {
  row_ = isFilled_ ? std::clamp<std::int64_t>(row, 0, height_ - 1) : row;
  column_ = std::clamp<std::int64_t>(column, 0, columns_ - 1);
}

void Screen::jump(std::int64_t column) {
  moveTo(row_ + kJump, column);
}

void Screen::moveToRow(std::int64_t row, std::int64_t column) {
  if (isFilled_) return moveTo(row, column);
  jump(column);
}

void Screen::lineFeed() {
  column_ = std::min(column_, columns_ - 1);
  if (isFilled_ && row_ == bottom_) return scroll(top_, 1);
  moveTo(row_ + 1, column_);
}

void Screen::reverseLineFeed() {
  column_ = std::min(column_, columns_ - 1);
  if (isFilled_ && row_ == top_) return scroll(top_, -1);
  moveTo(row_ - 1, column_);
}

/// Moves the rows from `top` to the end of what scrolls: up, or down for a negative number.
void Screen::scroll(std::int64_t top, std::int64_t rows) {
  if (!isFilled_) return;
  std::map<std::int64_t, Row> moved;
  for (auto& [row, cells] : rows_) {
    const bool scrolls = row >= top && row <= bottom_;
    const auto to = scrolls ? row - rows : row;
    if (!scrolls || (to >= top && to <= bottom_)) moved.emplace(to, std::move(cells));
  }
  rows_ = std::move(moved);
}

void Screen::setMargins(std::int64_t top, std::int64_t bottom) {
  top_ = top;
  bottom_ = bottom;
}

void Screen::mark() {
  if (!remembers() || column_ == 0) return;
  auto& cells = row();
  auto at = static_cast<std::size_t>(column_ - 1);
  if (cells[at] == kSecondHalf && at > 0) --at;
  cells[at] = kDrawing;
}

char32_t Screen::drawn(char32_t character) const {
  const bool isLine = drawsLines_[set_] && character >= U'`' && character <= U'~';
  return isLine ? kDrawing : character;
}

void Screen::put(char32_t character) {
  const auto width = text::columns(character);
  // A mark on the character before.
  if (width == 0) return mark();
  if (column_ + width > columns_) {
    if (wraps_) {
      column_ = 0;
      lineFeed();
    } else {
      column_ = std::max<std::int64_t>(columns_ - width, 0);
    }
  }
  if (remembers()) {
    auto& cells = row();
    const auto column = static_cast<std::size_t>(column_);
    const auto size = static_cast<std::size_t>(width);
    if (column + size > cells.size()) return;
    if (inserts_) {
      cells.insert(column, size, kNothing);
      cells.resize(static_cast<std::size_t>(columns_));
    }
    // Half of a wide character is none.
    if (cells[column] == kSecondHalf && column > 0) cells[column - 1] = kNothing;
    cells[column] = drawn(character);
    if (size == 2) cells[column + 1] = kSecondHalf;
    const auto behind = column + size;
    if (behind < cells.size() && cells[behind] == kSecondHalf) cells[behind] = kNothing;
  }
  column_ += width;
  last_ = character;
}

void Screen::control(char byte) {
  switch (byte) {
    case '\r':
      column_ = 0;
      return;
    case '\n':
    case '\v':
    case '\f':
      return lineFeed();
    case '\b':
      return moveTo(row_, std::min(column_, columns_ - 1) - 1);
    case '\t':
      return moveTo(row_, (column_ / kTabulator + 1) * kTabulator);
    case '\x0e':
    case '\x0f':
      set_ = byte == '\x0e' ? 1 : 0;
      return;
    default:
      return;
  }
}

void Screen::designate(char slot, char set) {
  if (slot == '(' || slot == ')') drawsLines_[slot == '(' ? 0 : 1] = set == '0';
}

void Screen::setPrivateMode(int mode, bool on) {
  if (mode == 7) wraps_ = on;
}

void Screen::skipToColumn(int column) {
  moveTo(row_ + 1, column);
}

void Screen::escape(char byte) {
  switch (byte) {
    case '7':
      savedRow_ = row_;
      savedColumn_ = column_;
      return;
    case '8':
      return moveTo(savedRow_, savedColumn_);
    case 'D':
      return lineFeed();
    case 'E':
      column_ = 0;
      return lineFeed();
    case 'M':
      return reverseLineFeed();
    case 'c':
      inserts_ = false;
      set_ = 0;
      drawsLines_[0] = drawsLines_[1] = false;
      return jump(0);
    default:
      return;
  }
}

void Screen::sequence(std::string_view parameters, char final) {
  // Private sequences and those with intermediate bytes do not move the cursor.
  const auto isPlain = [](char byte) { return (byte >= '0' && byte <= '9') || byte == ';'; };
  if (!std::all_of(parameters.begin(), parameters.end(), isPlain)) return;
  const auto [first, second] = numbersOf(parameters);
  const auto count = std::max<std::int64_t>(first, 1);
  const auto column = std::min(column_, columns_ - 1);
  switch (final) {
    case 'A':
      return moveTo(row_ - count, column);
    case 'B':
    case 'e':
      return moveTo(row_ + count, column);
    case 'C':
    case 'a':
      return moveTo(row_, column + count);
    case 'D':
      return moveTo(row_, column - count);
    case 'E':
      return moveTo(row_ + count, 0);
    case 'F':
      return moveTo(row_ - count, 0);
    case 'G':
    case '`':
      return moveTo(row_, count - 1);
    case 'H':
    case 'f':
      return moveToRow(count - 1, std::max<std::int64_t>(second, 1) - 1);
    case 'd':
      return moveToRow(count - 1, column);
    case 'I':
      return moveTo(row_, (column / kTabulator + count) * kTabulator);
    case 'Z':
      return moveTo(
          row_,
          (std::max<std::int64_t>(column + kTabulator - 1, 0) / kTabulator - count) * kTabulator);
    case 'r':
      return setScrolling(first, second);
    case 'L':
    case 'M':
      if (row_ >= top_ && row_ <= bottom_) scroll(row_, final == 'M' ? count : -count);
      return;
    case 'S':
    case 'T':
      return scroll(top_, final == 'S' ? count : -count);
    case 's':
      return escape('7');
    case 'u':
      return escape('8');
    case 'h':
    case 'l':
      if (first == 4) inserts_ = final == 'h';
      return;
    case 'K':
      return eraseLine(static_cast<int>(first));
    case 'J':
      return eraseDisplay(static_cast<int>(first));
    case 'b':
      for (std::int64_t i = 0; i < count; ++i)
        put(last_);
      return;
    default:
      break;
  }
  if (!remembers() || column_ >= columns_) return;
  auto& cells = row();
  const auto from = static_cast<std::size_t>(column_);
  const auto size = std::min(static_cast<std::size_t>(count), cells.size() - from);
  if (final == '@') {
    cells.insert(from, size, kNothing);
  } else if (final == 'P') {
    cells.erase(from, size);
  } else if (final == 'X') {
    std::fill_n(cells.begin() + column_, size, kNothing);
  }
  cells.resize(static_cast<std::size_t>(columns_), kNothing);
}

void Screen::setScrolling(std::int64_t first, std::int64_t last) {
  if (!isFilled_) return;
  const auto top = std::max<std::int64_t>(first, 1) - 1;
  const auto bottom = (last == 0 ? height_ : std::min(last, height_)) - 1;
  if (top >= bottom) return;
  setMargins(top, bottom);
  moveTo(0, 0);
}

void Screen::eraseLine(int how) {
  if (!remembers()) return;
  auto& cells = row();
  const auto cursor = std::min(column_, columns_);
  const auto from = how == 0 ? cells.begin() + cursor : cells.begin();
  const auto to = how == 1 ? cells.begin() + std::min(cursor + 1, columns_) : cells.end();
  if (from < to) std::fill(from, to, kNothing);
}

void Screen::eraseDisplay(int how) {
  if (how == 0) {
    rows_.erase(rows_.upper_bound(row_), rows_.end());
  } else if (how == 1) {
    rows_.erase(rows_.begin(), rows_.lower_bound(row_));
  } else {
    rows_.clear();
  }
  if (how < 2) eraseLine(how);
}

bool Screen::endsWith(std::u32string_view text, Place place) const {
  if (place < 0) return false;
  auto row = place / columns_;
  auto column = place % columns_;
  const auto* cells = &rowAt(row);
  for (const auto character : text) {
    const auto width = text::columns(character);
    // What stands on one cell with another cannot be told here.
    if (width == 0) return false;
    if (column + width > columns_) {
      ++row;
      column = 0;
      cells = &rowAt(row);
    }
    const auto at = static_cast<std::size_t>(column);
    if ((at < cells->size() ? (*cells)[at] : kNothing) != character) return false;
    column += width;
  }
  return row * columns_ + column == cursor();
}

Screen::Place Screen::placeBeforeCursor(std::u32string_view text) const {
  Place place = cursor();
  for (const auto character : text)
    place -= text::columns(character);
  return place;
}

std::u32string Screen::wordBeforeCursor(std::size_t longest) const {
  if (!isFilled_) return {};
  const auto& cells = rowAt(row_);
  auto at = std::min(static_cast<std::size_t>(column_), cells.size());
  std::u32string word;
  while (at > 0 && word.size() < longest) {
    const auto character = cells[--at];
    if (character == kSecondHalf || character == kDrawing || character == kNothing) break;
    word.insert(word.begin(), character);
  }
  return word;
}

std::u32string Screen::restOfRow() const {
  const auto& cells = rowAt(row_);
  auto rest = cells.substr(std::min(static_cast<std::size_t>(column_), cells.size()));
  rest.erase(rest.find_last_not_of(kNothing) + 1);
  return rest;
}

}  // namespace tessarok::terminal
