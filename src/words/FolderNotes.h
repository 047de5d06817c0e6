#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/Failure.h"

namespace tessarok {

/// Small files of one kind in the per-user folder, by which running copies tell one another
/// something without waiting for anybody. Each is written once, under a name of its own, and begins
/// with a line that no file of somebody else has. Any thread.
class FolderNotes {
 public:
  /// File names in the folder.
  using Names = std::set<std::string, std::less<>>;

  /// Names start with `prefix`; `title` is the first line with its line break. Both outlive it.
  constexpr FolderNotes(std::string_view prefix, std::string_view title)
      : prefix_(prefix), title_(title) {}

  /// Writes a new one.
  [[nodiscard]] platform::Failure write(std::string_view text) const;
  /// The names of all of them, and of files that only are named so.
  [[nodiscard]] Names find() const;
  [[nodiscard]] bool isName(std::string_view name) const;
  /// What one says; absent when it cannot be read or is something else.
  [[nodiscard]] std::optional<std::string> read(std::string_view name) const;
  /// Whether it is gone now.
  [[nodiscard]] static bool remove(std::string_view name);

  /// What follows the title of a file of the folder; absent when it has another.
  [[nodiscard]] static std::optional<std::string> readTitled(std::string_view name,
                                                             std::string_view title);

 private:
  std::string_view prefix_;
  std::string_view title_;
};

}  // namespace tessarok
