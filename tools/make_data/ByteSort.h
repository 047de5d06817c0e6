#pragma once

#include <string>
#include <vector>

namespace tessarok::makedata {

/// Sorts by unsigned bytes and removes duplicates. The corrector searches its dictionaries in this
/// order; it is not the alphabetical order of Russian, where ё stands between е and ж.
void sortByBytes(std::vector<std::string>& words);

/// One word a line, each line ended by LF.
[[nodiscard]] std::string joinLines(const std::vector<std::string>& words);

}  // namespace tessarok::makedata
