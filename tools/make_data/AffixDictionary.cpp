#include "AffixDictionary.h"

#include <algorithm>

#include "InputError.h"

namespace tessarok::makedata {

namespace {

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

void refuseUnknownFlags(std::u32string_view flags, const AffixTable& table,
                        const std::filesystem::path& file, std::size_t line) {
  for (const char32_t flag : flags) {
    if (table.hasFlag(flag)) continue;
    throw InputError(file, line,
                     "no affix class for the flag '" + encodeUtf8(std::u32string(1, flag)) + "'");
  }
}

}  // namespace

void expandEntries(const std::vector<Line>& entries, const AffixTable& table,
                   const std::filesystem::path& file, const FormsSink& sink) {
  std::vector<std::u32string> forms;
  for (const Line& line : entries) {
    const std::string_view entry = trimmed(line.text.substr(0, line.text.find('\t')));
    if (entry.empty()) continue;
    const std::size_t slash = std::min(entry.find('/'), entry.size());
    if (slash == 0) throw InputError(file, line.number, "an entry without a word");
    const std::u32string stem = decodeUtf8(entry.substr(0, slash));
    const std::u32string flags = decodeUtf8(entry.substr(std::min(slash + 1, entry.size())));
    refuseUnknownFlags(flags, table, file, line.number);
    forms.clear();
    table.expand(stem, flags, forms);
    sink(forms);
  }
}

void expandHunspell(std::string_view utf8, const AffixTable& table,
                    const std::filesystem::path& file, const FormsSink& sink) {
  std::vector<Line> lines = splitLines(utf8);
  // The number is a hint that real dictionaries get wrong, so only its presence is checked: without
  // it the file is not a dictionary and its first word would be lost.
  if (lines.empty() || !isNumber(trimmed(lines.front().text))) {
    throw InputError(file, 1, "the first line must be the number of entries");
  }
  lines.erase(lines.begin());
  expandEntries(lines, table, file, sink);
}

}  // namespace tessarok::makedata
