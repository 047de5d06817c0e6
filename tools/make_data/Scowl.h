#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "AffixDictionary.h"

namespace tessarok::makedata {

/// The SCOWL lists in a directory that the English dictionary is made of, in the order of their
/// names. Throws InputError when the directory cannot be listed or lacks the common words.
[[nodiscard]] std::vector<std::filesystem::path> findScowlLists(
    const std::filesystem::path& directory);

/// Whether the dictionary takes the list of this file name, such as "american-words.35".
[[nodiscard]] bool isWantedScowlList(std::string_view fileName);

/// The size in the name of a wanted list: the smaller, the commoner its words.
[[nodiscard]] int sizeOfScowlList(const std::filesystem::path& list);

/// Hands every word of one list (one word a line, UTF-8 by now) to `sink`. Throws InputError for an
/// empty line or a line of several words.
void readScowlList(std::string_view utf8, const std::filesystem::path& file, const FormSink& sink);

}  // namespace tessarok::makedata
