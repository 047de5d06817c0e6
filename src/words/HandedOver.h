#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Failure.h"
#include "words/FolderNotes.h"
#include "words/LearnedLists.h"

namespace tessarok {

/// The small files in the per-user folder by which a copy that does not write the learned lists
/// hands over what it has learned. Each is written once, under a name of its own, and removed by
/// the copy that has counted it: nobody waits for anybody, and a copy may be killed at any moment.
///
/// A killed copy must also leave nothing that is counted twice. So the one that counts writes the
/// new "rejects.txt" together with the names of what is counted in it into a file of its own first,
/// the receipt. Whoever finds one takes its text in place of "rejects.txt" and counts none of these
/// names again.
class HandedOver {
 public:
  HandedOver() = delete;

  using Names = FolderNotes::Names;

  /// What is counted but not yet known to be in "rejects.txt".
  struct Receipt {
    Names names;
    std::string rejects;
  };

  /// Writes rejections into a new file.
  static platform::Failure write(const LearnedLists::Counts& rejections);
  /// The names of all such files.
  [[nodiscard]] static Names find();
  /// The rejections of one; absent when it cannot be read or holds something else.
  [[nodiscard]] static std::optional<LearnedLists::Counts> read(std::string_view name);
  /// Removes files; those that are still there.
  [[nodiscard]] static Names remove(const Names& names);

  [[nodiscard]] static std::optional<Receipt> readReceipt();
  static platform::Failure writeReceipt(const Receipt& receipt);
  static void removeReceipt();
};

}  // namespace tessarok
