#pragma once

#include <optional>
#include <string>
#include <vector>

#include "words/DataFault.h"

namespace tessarok::commands {

/// Whether a command's answers depend on the packs of slang.
enum class Packs { needed, unused };

/// Throws `CommandError`, naming the file, when a data file that the answers depend on is
/// missing.
void requireWordData(Packs packs);

/// A data file and the first thing that is wrong with it; absent when nothing is.
struct CheckedFile {
  /// Its path; its name where it is missing.
  std::string file;
  std::optional<DataFault> fault;
};

/// Reads and judges every data file that the program would use.
[[nodiscard]] std::vector<CheckedFile> checkWordData();

}  // namespace tessarok::commands
