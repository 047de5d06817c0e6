#pragma once

#include <filesystem>
#include <string>

namespace tessarok::makedata {

/// Unpacks a compressed aspell word list (.cwl.gz: prefix-compressed, then gzip) with the programs
/// gzip and prezip-bin. The result is in the list's own charset, one entry a line. `file` only
/// names the culprit of an InputError.
[[nodiscard]] std::string unpackAspellList(const std::string& packed,
                                           const std::filesystem::path& file);

}  // namespace tessarok::makedata
