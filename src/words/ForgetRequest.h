#pragma once

#include <optional>
#include <string_view>

#include "platform/Failure.h"
#include "words/FolderNotes.h"
#include "words/WordSet.h"

namespace tessarok {

/// The small files in the per-user folder by which somebody asks every running copy to take words
/// back that it has learned. Each is written once, under a name of its own. Every copy does what it
/// says when it sees it, and the one that writes the lists removes it when the others have had time
/// to see it.
class ForgetRequest {
 public:
  ForgetRequest() = delete;

  using Names = FolderNotes::Names;

  /// Writes a request for normalised words.
  static platform::Failure write(const WordSet& words);
  /// The names of all of them.
  [[nodiscard]] static Names find();
  /// The words of one; absent when it cannot be read or holds something else.
  [[nodiscard]] static std::optional<WordSet> read(std::string_view name);
  /// Removes one; whether it is gone.
  static bool remove(std::string_view name);
};

}  // namespace tessarok
