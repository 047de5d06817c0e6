// Not understood: here-documents, "case", and quotes within substitutions within quotes. What is
// mistaken for text is corrected as text is.

#include "desktops/terminal/CommandLine.h"

#include <algorithm>
#include <array>
#include <string>

namespace tessarok::terminal {

namespace {

using Part = platform::TextContext::Part;

/// The words behind which another command may stand.
constexpr std::array<std::u32string_view, 27> kStarters = {
    U"sudo",  U"doas",  U"env",     U"time",    U"nohup", U"exec",   U"xargs",
    U"nice",  U"ionice", U"command", U"builtin", U"watch", U"which",  U"type",
    U"man",   U"if",    U"then",    U"else",    U"elif",  U"while",  U"until",
    U"do",    U"!",     U"{",       U"strace",  U"setsid", U"whereis"};

bool isSpace(char32_t character) {
  return character == U' ' || character == U'\t';
}

/// Reads a line character by character.
class Reader {
 public:
  explicit Reader(bool isWhole) : awaitsCommand_(isWhole) {}

  void read(char32_t character) {
    if (isEscaped_) {
      isEscaped_ = false;
      word_.push_back(character);
    } else if (quote_ != 0) {
      readQuoted(character);
    } else if (!isComment_) {
      readPlain(character);
    }
  }

  [[nodiscard]] CommandLineEnd end() const {
    if (quote_ != 0 || isComment_) return {Part::text, quote_};
    return {awaitsCommand_ ? Part::commandName : Part::commandArgument, 0};
  }

 private:
  void readQuoted(char32_t character) {
    if (character == quote_) {
      quote_ = 0;
    } else if (character == U'\\' && quote_ == U'"') {
      isEscaped_ = true;
    }
  }

  void readPlain(char32_t character) {
    switch (character) {
      case U'\\':
        isEscaped_ = true;
        return;
      case U'\'':
      case U'"':
        quote_ = character;
        word_.push_back(character);
        return;
      case U'|':
      case U'&':
      case U';':
      case U'(':
      case U'`':
        word_.clear();
        awaitsCommand_ = true;
        return;
      case U'<':
      case U'>':
        endWord();
        awaitsCommand_ = false;
        return;
      case U'#':
        if (word_.empty()) isComment_ = true;
        word_.push_back(character);
        return;
      default:
        break;
    }
    if (isSpace(character)) return endWord();
    word_.push_back(character);
  }

  void endWord() {
    if (word_.empty()) return;
    // Options of a starter, and variables that are set for one command, come before the command.
    const bool isBefore = word_.front() == U'-' || word_.find(U'=') != std::u32string::npos ||
                          std::find(kStarters.begin(), kStarters.end(), word_) != kStarters.end();
    if (!isBefore) awaitsCommand_ = false;
    word_.clear();
  }

  bool awaitsCommand_;
  std::u32string word_;
  char32_t quote_ = 0;
  bool isEscaped_ = false;
  bool isComment_ = false;
};

}  // namespace

CommandLineEnd endOfCommandLine(std::u32string_view line, bool isWhole) {
  Reader reader(isWhole);
  for (const auto character : line)
    reader.read(character);
  return reader.end();
}

}  // namespace tessarok::terminal
