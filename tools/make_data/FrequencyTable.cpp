#include "FrequencyTable.h"

#include <algorithm>
#include <charconv>

#include "InputError.h"
#include "InputText.h"

namespace tessarok::makedata {

namespace {

/// By Zipf's law the word at place n is met this many times in a million divided by n.
constexpr double kFirstPlacePerMillion = 50'000;

/// A dictionary is richer in rare words than what people type.
constexpr double kListedShare = 0.5;

double perMillionOf(std::size_t count, std::size_t total) {
  return total == 0 ? 0 : 1e6 * static_cast<double>(count) / static_cast<double>(total);
}

std::size_t numberIn(std::string_view field, const std::filesystem::path& file, std::size_t line) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
  if (error != std::errc() || end != field.data() + field.size()) {
    throw InputError(file, line, "'" + std::string(field) + "' is not a number");
  }
  return number;
}

}  // namespace

FrequencyTable FrequencyTable::parse(std::string_view utf8, const std::filesystem::path& file,
                                     const Alphabet& alphabet) {
  FrequencyTable table;
  std::size_t total = 0;
  std::size_t allListed = 0;
  std::size_t allSpoken = 0;
  for (const Line& line : splitLines(utf8)) {
    if (line.text.starts_with('#')) continue;
    const auto fields = splitFields(line.text);
    if (fields.size() != 5) throw InputError(file, line.number, "not a word and four numbers");
    if (!alphabet.spells(decodeUtf8(fields[0]))) {
      throw InputError(
          file, line.number,
          "'" + std::string(fields[0]) + "' is not a word of the " + alphabet.name() + " letters");
    }
    const Entry entry{
        numberIn(fields[1], file, line.number), numberIn(fields[2], file, line.number),
        numberIn(fields[3], file, line.number), numberIn(fields[4], file, line.number)};
    total += entry.count;
    allListed += entry.listed;
    allSpoken += entry.spoken;
    table.entries_.emplace(fields[0], entry);
  }
  for (auto& [word, entry] : table.entries_) {
    const double counted = perMillionOf(entry.count, total);
    const double listed = kListedShare * perMillionOf(entry.listed, allListed);
    const double ranked =
        entry.place == 0 ? 0 : kFirstPlacePerMillion / static_cast<double>(entry.place);
    const double spoken = perMillionOf(entry.spoken, allSpoken);
    entry.typedPerMillion = std::max({counted, ranked, spoken});
    entry.perMillion = std::max(entry.typedPerMillion, listed);
  }
  return table;
}

double FrequencyTable::perMillion(const std::string& word) const {
  const auto found = entries_.find(word);
  return found == entries_.end() ? 0 : found->second.perMillion;
}

}  // namespace tessarok::makedata
