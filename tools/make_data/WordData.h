#pragma once

#include <filesystem>
#include <vector>

#include "DataFile.h"
#include "InputLedger.h"

namespace tessarok::makedata {

/// Where the inputs lie.
struct SourcePaths {
  std::filesystem::path hunspellAffixes;
  std::filesystem::path hunspellWords;
  std::filesystem::path aspellAffixes;
  std::filesystem::path aspellWords;
  std::filesystem::path scowl;
  /// The lists written by hand: add_*, drop_*, freq_short_* and pack_*.
  std::filesystem::path lists;
};

/// Makes all data files in memory, in the order in which the manifest lists them, and records every
/// file read in `ledger`. Throws InputError.
[[nodiscard]] std::vector<DataFile> makeWordData(const SourcePaths& paths, InputLedger& ledger);

}  // namespace tessarok::makedata
