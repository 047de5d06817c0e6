#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessarok::testing {

/// The command that opens a page in a window of the browser Chromium with nothing around it. Its
/// profile lies in the page's folder. `options` are further ones.
[[nodiscard]] std::vector<std::string> chromiumCommand(
    const std::filesystem::path& page, const std::vector<std::string>& options = {});

}  // namespace tessarok::testing
