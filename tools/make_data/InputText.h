#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessarok::makedata {

/// One line of a text file, without its line end. Numbers start at 1.
struct Line {
  std::size_t number = 0;
  std::string_view text;
};

/// Splits at LF and drops a CR before it. The views point into `text`.
[[nodiscard]] std::vector<Line> splitLines(std::string_view text);

/// The text without white space at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The fields of a line that is divided by blanks and tabs.
[[nodiscard]] std::vector<std::string_view> splitFields(std::string_view text);

/// Converts a file's bytes to UTF-8. `charset` is a name known to iconv. Throws InputError with the
/// line of the first byte sequence that the charset does not have. `file` only names the culprit.
[[nodiscard]] std::string toUtf8(const std::string& bytes, const char* charset,
                                 const std::filesystem::path& file);

/// Scalars of UTF-8 text already known to be valid (see toUtf8).
[[nodiscard]] std::u32string decodeUtf8(std::string_view text);

[[nodiscard]] std::string encodeUtf8(std::u32string_view text);

/// Lower case by the Unicode tables, scalar by scalar.
[[nodiscard]] std::u32string lowerCase(std::u32string_view text);

}  // namespace tessarok::makedata
