#pragma once

#include <filesystem>
#include <vector>

#include "Sentence.h"

namespace tessarok::measure {

/// Writes word data that know every word of the sentences, long and short, and of the other
/// language only what no word stands against: nothing, but for the Russian pairs that are converted
/// whatever is known; and the packs, from the directory `packs`, which every person has. What is
/// missed with them is missed because of the rules. Throws std::runtime_error.
void writeCeilingData(const std::vector<Sentence>& sentences, Language language,
                      const std::filesystem::path& packs, const std::filesystem::path& directory);

}  // namespace tessarok::measure
