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
constexpr auto kStarters = std::to_array<std::u32string_view>(
    {U"sudo", U"doas",   U"env",     U"time",    U"nohup",  U"exec",  U"xargs",
     U"nice", U"ionice", U"command", U"builtin", U"watch",  U"which", U"type",
     U"if",   U"then",   U"else",    U"elif",    U"while",  U"until", U"do",
     U"!",    U"{",      U"strace",  U"setsid",  U"whereis"});

/// The programs whose arguments are names of programs and of packages.
constexpr auto kInstallers = std::to_array<std::u32string_view>(
    {U"apt",    U"apt-get", U"apt-cache", U"aptitude", U"dpkg",    U"dnf",       U"yum",  U"pacman",
     U"zypper", U"apk",     U"brew",      U"snap",     U"flatpak", U"pip",       U"pip3", U"pipx",
     U"npm",    U"yarn",    U"pnpm",      U"cargo",    U"gem",     U"nix-shell", U"man",  U"tldr"});

template <typename Words>
bool contains(const Words& words, std::u32string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

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
    if (word_.starts_with(U'-')) return {Part::commandOption, 0};
    const bool isName = awaitsCommand_ || namesFollow_;
    return {isName ? Part::commandName : Part::commandArgument, 0};
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
        namesFollow_ = false;
        return;
      case U'<':
      case U'>':
        endWord();
        awaitsCommand_ = namesFollow_ = false;
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
                          contains(kStarters, word_);
    if (awaitsCommand_ && !isBefore) {
      awaitsCommand_ = false;
      namesFollow_ = contains(kInstallers, word_);
    }
    word_.clear();
  }

  bool awaitsCommand_;
  bool namesFollow_ = false;
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
