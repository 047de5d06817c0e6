#pragma once

#include <cstddef>
#include <string_view>

namespace tessarok {

/// Walks over the lines of a text, split at LF, each trimmed of white space; lines that are empty
/// then are passed over, and so is a byte-order mark at the start, which some editors leave there.
class WordLines {
 public:
  /// What counts as a line break.
  enum class Split {
    /// Every LF.
    atEveryLf,
    /// An LF that does not follow a CR: the pair is one Character of its own and stays inside
    /// the line.
    atLoneLf,
  };

  static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

  explicit WordLines(std::string_view text, Split split = Split::atEveryLf)
      : rest_(text), split_(split) {
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
  }

  /// Moves to the next line that is not empty; false at the end of the text.
  bool next();
  /// The current line, trimmed.
  [[nodiscard]] std::string_view line() const { return line_; }
  /// The current line's number in the text, counted from 1.
  [[nodiscard]] std::size_t number() const { return number_; }

 private:
  [[nodiscard]] std::size_t lineBreak() const;

  std::string_view rest_;
  std::string_view line_;
  std::size_t number_ = 0;
  Split split_;
};

}  // namespace tessarok
