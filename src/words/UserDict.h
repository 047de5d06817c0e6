#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/FileStamp.h"
#include "words/WordSet.h"

namespace tessarok {

/// The file that the person edits by hand: words that are never corrected. Main thread.
class UserDict {
 public:
  UserDict() = delete;

  /// A larger file is not read: keys wait meanwhile. Half a million words are smaller. 8 MiB.
  static constexpr std::uint64_t kMostBytes = std::uint64_t{8} * 1024 * 1024;

  /// The words of the last successful load, normalised; empty before it.
  [[nodiscard]] static const WordSet& words();
  /// "dictionary.txt" in the per-user folder. Computed on every use.
  [[nodiscard]] static std::filesystem::path fileURL();
  /// The folder of this program's per-user files.
  [[nodiscard]] static std::filesystem::path directory();

  /// Writes the commented template when there is no file. An existing file is never touched.
  static void seedIfMissing();
  /// Reads the file; on any failure the words stay as they were. Of a file that is too large the
  /// system log tells, once for each state of it.
  static void reload();
  /// Reads the file when its stamp is not that of the last successful load. One attribute query
  /// when nothing changed.
  static void reloadIfChanged();

  /// The words of a list file: a line each, trimmed and lower-cased, "#" starts a comment line.
  [[nodiscard]] static WordSet parse(std::string_view text);
};

}  // namespace tessarok
