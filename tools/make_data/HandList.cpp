#include "HandList.h"

#include <unordered_map>

#include "InputError.h"

namespace tessarok::makedata {

std::vector<Line> readHandList(std::string_view utf8, const std::filesystem::path& file) {
  std::vector<Line> entries;
  std::unordered_map<std::string, std::size_t> lineOf;
  for (const Line& line : splitLines(utf8)) {
    const std::string_view entry = trimmed(line.text);
    if (entry.empty() || entry.starts_with('#')) continue;
    if (splitFields(entry).size() != 1) {
      throw InputError(file, line.number, "an entry must not hold white space");
    }
    const std::string key = encodeUtf8(lowerCase(decodeUtf8(entry)));
    const auto [first, isNew] = lineOf.emplace(key, line.number);
    if (!isNew) {
      throw InputError(
          file, line.number,
          "'" + std::string(entry) + "' is already on line " + std::to_string(first->second));
    }
    entries.push_back({line.number, entry});
  }
  return entries;
}

std::vector<std::string> readHandWords(std::string_view utf8, const std::filesystem::path& file,
                                       const Alphabet& alphabet, LengthRange lengths) {
  std::vector<std::string> words;
  for (const Line& line : readHandList(utf8, file)) {
    const std::u32string word = lowerCase(decodeUtf8(line.text));
    if (!alphabet.spells(word)) {
      throw InputError(
          file, line.number,
          "'" + std::string(line.text) + "' is not a word of the " + alphabet.name() + " letters");
    }
    if (word.size() < lengths.shortest || word.size() > lengths.longest) {
      throw InputError(file, line.number,
                       "'" + std::string(line.text) + "' must have " +
                           std::to_string(lengths.shortest) + " to " +
                           std::to_string(lengths.longest) + " letters");
    }
    words.push_back(encodeUtf8(word));
  }
  return words;
}

}  // namespace tessarok::makedata
