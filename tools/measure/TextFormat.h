#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessarok::measure {

/// How a corpus file holds its text.
enum class TextFormat {
  /// Sayings between lines of a single percent sign, with their authors on lines of their own.
  fortune,
  html,
  /// A manual page with troff requests.
  man,
  /// Paragraphs between empty lines.
  plain,
  /// Every line by itself: programs and lists of file names.
  lines,
  /// The translations in a compiled message catalogue, such as the dialogues of a game.
  catalog,
  /// What was translated in it.
  catalogOriginals,
  /// What stands between double quotes in a script, such as the dialogues of a game.
  strings,
  /// What stands between grave accents.
  backquoted,
};

/// Absent for an unknown name.
[[nodiscard]] std::optional<TextFormat> textFormatNamed(const std::string& name);

/// The running text of a file, a paragraph an element. `text` is UTF-8 but for the head of a
/// catalogue. A file that is no catalogue holds no paragraph.
[[nodiscard]] std::vector<std::string> paragraphsOf(std::string_view text, TextFormat format);

}  // namespace tessarok::measure
