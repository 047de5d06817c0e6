// What a filled screen shows after any sequences, beside another implementation of a terminal.
// Without wide characters, of which that one leaves halves where terminals leave a space, and
// without characters that are inserted or deleted while only a part scrolls, which it refuses
// outside of that.

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vterm.h>

#include "desktops/terminal/ProgramOutput.h"
#include "text/Text.h"

namespace tessarok::terminal {
namespace {

constexpr int kRows = 12;
constexpr int kColumns = 30;

/// The terminal of the other implementation.
class Reference {
 public:
  Reference() : terminal_(vterm_new(kRows, kColumns)) {
    vterm_set_utf8(terminal_, 1);
    vterm_screen_enable_altscreen(screen(), 1);
    vterm_screen_reset(screen(), 1);
  }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  ~Reference() { vterm_free(terminal_); }

  void feed(const std::string& bytes) { vterm_input_write(terminal_, bytes.data(), bytes.size()); }
  [[nodiscard]] VTermPos cursor() const {
    VTermPos place;
    vterm_state_get_cursorpos(vterm_obtain_state(terminal_), &place);
    return place;
  }
  /// A row up to its last character that is no space.
  [[nodiscard]] std::u32string row(int row) const {
    std::u32string text;
    for (int column = 0; column < kColumns; ++column) {
      VTermScreenCell cell;
      vterm_screen_get_cell(screen(), {row, column}, &cell);
      text.push_back(cell.chars[0] == 0 ? U' ' : static_cast<char32_t>(cell.chars[0]));
    }
    text.erase(text.find_last_not_of(U' ') + 1);
    return text;
  }

 private:
  [[nodiscard]] VTermScreen* screen() const { return vterm_obtain_screen(terminal_); }

  VTerm* terminal_;
};

/// Sequences of any program that fills the screen.
class Program {
 public:
  explicit Program(unsigned seed) : random_(seed) {}

  std::string next() {
    switch (number(0, 20)) {
      case 0:
        return place();
      case 1:
        return "\r\n";
      case 2:
        // Behind the last column terminals differ.
        return "\r\n\n";
      case 3:
        return "\r\x1bM";
      case 4:
        return csi(number(1, 4), 'L');
      case 5:
        return csi(number(1, 4), 'M');
      case 6:
        return scrollsAll_ ? csi(number(1, 6), '@') : text();
      case 7:
        return scrollsAll_ ? csi(number(1, 6), 'P') : text();
      case 8:
        return csi(number(1, 6), 'X');
      case 9:
        return csi(number(0, 2), 'K');
      case 10:
        return csi(number(0, 2), 'J');
      case 11: {
        const int top = number(1, kRows - 1);
        scrollsAll_ = false;
        return "\x1b[" + std::to_string(top) + ";" + std::to_string(number(top + 1, kRows)) + "r";
      }
      case 12:
        scrollsAll_ = true;
        return "\x1b[r";
      case 13:
        return csi(number(1, 5), "ABCD"[number(0, 3)]);
      case 14:
        return csi(number(1, kColumns), 'G');
      case 15:
        return csi(number(1, 3), number(0, 1) == 0 ? 'S' : 'T');
      case 16:
        return "\t";
      case 17:
        return "\b";
      case 18:
        return csi(number(1, kRows), 'd');
      default:
        return text();
    }
  }

 private:
  int number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  static std::string csi(int count, char final) { return "\x1b[" + std::to_string(count) + final; }
  std::string place() {
    return "\x1b[" + std::to_string(number(1, kRows)) + ";" + std::to_string(number(1, kColumns)) +
           "H";
  }
  std::string text() {
    static const std::u32string kLetters = U"abcdefgнопр стуф xyz";
    std::string text;
    for (int i = number(1, 12); i > 0; --i) {
      text::appendScalar(
          kLetters[static_cast<std::size_t>(number(0, static_cast<int>(kLetters.size()) - 1))],
          text);
    }
    return text;
  }

  std::mt19937 random_;
  bool scrollsAll_ = true;
};

/// The row of the cursor of this implementation, which shows no other one.
std::u32string rowOf(ProgramOutput& output) {
  output.feed("\r");
  return output.screen().restOfRow();
}

TEST(ScreenReference, AFilledScreenIsThatOfAnotherTerminal) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    ProgramOutput output;
    output.screen().setSize(kRows, kColumns);
    Reference reference;
    std::string all = "\x1b[?1049h\x1b[2J\x1b[H";
    Program program(seed);
    output.feed(all);
    reference.feed(all);
    for (int i = 0; i < 120; ++i) {
      const auto sequence = program.next();
      all += sequence;
      output.feed(sequence);
      reference.feed(sequence);
      const auto place = reference.cursor();
      // Behind the last character of a row the other one stays on it.
      const auto own = output.screen().cursor();
      const auto expected = place.row * kColumns + place.col;
      ASSERT_TRUE(own == expected || (place.col == kColumns - 1 && own == expected + 1))
          << "seed " << seed << ": " << own << ", not " << expected << " after "
          << ::testing::PrintToString(all);
    }
    for (int row = 0; row < kRows; ++row) {
      output.feed("\x1b[r\x1b[" + std::to_string(row + 1) + "d");
      ASSERT_EQ(rowOf(output), reference.row(row))
          << "seed " << seed << ", row " << row << " after " << ::testing::PrintToString(all);
    }
  }
}

}  // namespace
}  // namespace tessarok::terminal
