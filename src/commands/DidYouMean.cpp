#include "commands/DidYouMean.h"

#include <algorithm>

#include "text/Text.h"
#include "words/LayoutMap.h"

namespace tessarok::commands {

namespace {

/// Who mistypes a longer one is shown the list; the table below grows with both lengths.
constexpr std::size_t kLongest = 40;

std::vector<std::string_view> charactersOf(std::string_view text) {
  std::vector<std::string_view> characters;
  for (const auto character : text::Characters(text))
    characters.push_back(character);
  return characters;
}

/// Most mistakes that leave a word recognisable.
std::size_t toleranceFor(std::string_view name) {
  return std::max<std::size_t>(1, text::count(name) / 3);
}

/// Bytes with which both begin.
std::ptrdiff_t sharedStart(std::string_view one, std::string_view other) {
  return std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first - one.begin();
}

}  // namespace

std::size_t distanceBetween(std::string_view one, std::string_view other) {
  const auto left = charactersOf(one);
  const auto right = charactersOf(other);
  const auto width = right.size() + 1;
  // Row by row: the distances between the beginnings of both.
  std::vector<std::size_t> table((left.size() + 1) * width);
  for (std::size_t i = 0; i <= left.size(); ++i) {
    for (std::size_t j = 0; j <= right.size(); ++j) {
      auto& cell = table[i * width + j];
      if (i == 0 || j == 0) {
        cell = i + j;
        continue;
      }
      const std::size_t replaced = left[i - 1] == right[j - 1] ? 0 : 1;
      cell = std::min({table[(i - 1) * width + j] + 1, table[i * width + j - 1] + 1,
                       table[(i - 1) * width + j - 1] + replaced});
      const bool isSwapped =
          i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (isSwapped) cell = std::min(cell, table[(i - 2) * width + j - 2] + 1);
    }
  }
  return table.back();
}

std::optional<std::string> nearestName(std::string_view wrong,
                                       const std::vector<std::string>& names) {
  if (text::count(wrong) > kLongest) return std::nullopt;
  const auto inEnglish = LayoutMap::convert(wrong, Language::russian);
  std::optional<std::string> nearest;
  std::size_t least = 0;
  for (const auto& name : names) {
    const auto distance = std::min(distanceBetween(wrong, name), distanceBetween(inEnglish, name));
    // A word of which nothing is left is none that was mistyped.
    if (distance > toleranceFor(name) || distance >= text::count(name)) continue;
    const bool isBetter =
        !nearest || distance < least ||
        (distance == least && sharedStart(wrong, name) > sharedStart(wrong, *nearest));
    if (!isBetter) continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}

}  // namespace tessarok::commands
