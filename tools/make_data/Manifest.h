#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "DataFile.h"
#include "InputLedger.h"

namespace tessarok::makedata {

/// Tells a package's version, or nothing when it is not known.
using VersionLookup = std::function<std::optional<std::string>(const std::string& package)>;

/// The package name of the lists that belong to this project; it has no version of its own.
inline constexpr const char* kOwnLists = "tessarok";

/// MANIFEST.json: where every input came from and what every output holds. It carries no date and
/// no path of the build, so that the same inputs give the same bytes.
[[nodiscard]] std::string manifestJson(const std::vector<InputRecord>& inputs,
                                       const std::vector<DataFile>& outputs,
                                       const VersionLookup& versionOf);

}  // namespace tessarok::makedata
