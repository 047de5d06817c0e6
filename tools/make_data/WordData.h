#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "DataFile.h"
#include "InputLedger.h"
#include "KeyNgrams.h"

namespace tessarok::makedata {

/// Where the inputs lie.
struct SourcePaths {
  std::filesystem::path hunspellAffixes;
  std::filesystem::path hunspellWords;
  std::filesystem::path aspellAffixes;
  std::filesystem::path aspellWords;
  std::filesystem::path scowl;
  /// The frequency tables, and the lists written by hand: add_*, drop_*, freq_short_* and pack_*.
  std::filesystem::path lists;
};

/// From which weight on, in times per million words, letter groups are part of a language. The
/// numbers came out best of a measurement; docs/word-data.md has the others.
struct NgramFloors {
  KeyNgrams::Floors english{1, 2};
  KeyNgrams::Floors russian{120, 20};
};

/// Makes all data files in memory, in the order in which the manifest lists them, and records every
/// file read in `ledger`. `report` gets a line for every word that was dropped or that keeps
/// another from being fixed, and why. Throws InputError.
[[nodiscard]] std::vector<DataFile> makeWordData(const SourcePaths& paths,
                                                 const NgramFloors& floors, InputLedger& ledger,
                                                 std::string& report);

}  // namespace tessarok::makedata
