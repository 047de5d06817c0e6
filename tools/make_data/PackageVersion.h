#pragma once

#include <optional>
#include <string>

namespace tessarok::makedata {

/// The installed version of a Debian package; absent on a system without dpkg or without the
/// package, where the manifest goes without it.
[[nodiscard]] std::optional<std::string> packageVersion(const std::string& package);

}  // namespace tessarok::makedata
