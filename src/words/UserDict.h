#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

#include "words/WordSet.h"

namespace tessarok {

/// The file that the person edits by hand: words that are never corrected. Main thread; the file
/// is read on a serial queue, and meanwhile the words stay as they are.
class UserDict {
 public:
  UserDict() = delete;

  /// Whether a normalised word is one of the last successful load. Never waits.
  [[nodiscard]] static bool contains(std::string_view word);
  /// Whether the first load has been asked for and is not done: no word is known yet.
  [[nodiscard]] static bool isLoading();
  /// The words of the last successful load, normalised; empty before it. Waits for what was asked
  /// for.
  [[nodiscard]] static WordSet words();
  /// "dictionary.txt" in the per-user folder. Computed on every use.
  [[nodiscard]] static std::filesystem::path fileURL();
  /// The folder of this program's per-user files.
  [[nodiscard]] static std::filesystem::path directory();

  /// Writes the commented template when there is no file. An existing file is never touched.
  static void seedIfMissing();
  /// Reads the file; on any failure the words stay as they were. `then` is called on the main
  /// thread once everything that was asked for before is done; it does not wait for the reading.
  static void reload(std::function<void()> then = nullptr);
  /// Reads the file when its stamp is not that of the last successful load. One attribute query
  /// when nothing changed.
  static void reloadIfChanged();
  /// Waits until nothing is read any more; a file that is being read is given up.
  static void stop();
};

}  // namespace tessarok
