#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "AffixTable.h"
#include "InputText.h"

namespace tessarok::makedata {

/// Receives one form at a time, in the case of the dictionary.
using FormSink = std::function<void(std::u32string_view form)>;
/// Receives all forms of one entry.
using FormsSink = std::function<void(const std::vector<std::u32string>& forms)>;

/// Expands entries `word` or `word/FLAGS`, each optionally followed by a tab and notes, and hands
/// the forms of each to `sink`. Throws InputError for an entry without a word or with a flag that
/// `table` does not know.
void expandEntries(const std::vector<Line>& entries, const AffixTable& table,
                   const std::filesystem::path& file, const FormsSink& sink);

/// Expands a hunspell .dic file: the number of entries, then the entries.
void expandHunspell(std::string_view utf8, const AffixTable& table,
                    const std::filesystem::path& file, const FormsSink& sink);

}  // namespace tessarok::makedata
