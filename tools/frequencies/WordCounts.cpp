#include "WordCounts.h"

#include <algorithm>
#include <charconv>

#include "text/Text.h"
#include "words/Letters.h"

namespace tessarok::frequencies {

namespace {

constexpr std::string_view kPunctuation = "\"'()[]{}<>,.;:!?*_-";

/// Shorter runs are abbreviations and parts of words.
constexpr std::size_t kShortestListed = 4;

/// A token without the punctuation at its ends.
std::string_view stripped(std::string_view token) {
  const auto first = token.find_first_not_of(kPunctuation);
  if (first == std::string_view::npos) return {};
  return token.substr(first, token.find_last_not_of(kPunctuation) - first + 1);
}

bool isWord(std::string_view word, Language language) {
  return !word.empty() &&
         std::ranges::all_of(text::Characters(word), [language](std::string_view character) {
           return letters::languageOf(character) == language;
         });
}

/// CMake, but not IDs: in the dictionary such a name would look like a Shift key held too long.
bool hasTwoLeadingCapitals(std::string_view word) {
  const auto second = word.substr(text::firstCharacter(word).size());
  const auto third = second.substr(text::firstCharacter(second).size());
  return text::count(word) >= 4 && text::isUppercase(text::firstCharacter(word)) &&
         text::isUppercase(text::firstCharacter(second)) &&
         std::ranges::all_of(text::Characters(third), &text::isLowercase);
}

}  // namespace

void WordCounts::add(std::string_view sentence, Language language) {
  while (!sentence.empty()) {
    const auto end = std::min(sentence.find(' '), sentence.size());
    auto token = stripped(sentence.substr(0, end));
    sentence.remove_prefix(std::min(end + 1, sentence.size()));
    while (!token.empty()) {
      // Both parts of a word with a hyphen are typed as words.
      const auto hyphen = std::min(token.find('-'), token.size());
      const auto part = token.substr(0, hyphen);
      token.remove_prefix(std::min(hyphen + 1, token.size()));
      if (!isWord(part, language) || hasTwoLeadingCapitals(part)) continue;
      ++entries_[text::lowercased(part)].count;
      ++total_;
    }
  }
}

void WordCounts::addCode(std::string_view line) {
  std::string run;
  const auto end = [&] {
    if (run.size() > 1 && !hasTwoLeadingCapitals(run)) {
      ++entries_[text::lowercased(run)].count;
      ++total_;
    }
    run.clear();
  };
  for (const char byte : line) {
    if (letters::languageOf(std::string_view(&byte, 1)) == Language::english) {
      run += byte;
    } else {
      end();
    }
  }
  end();
}

void WordCounts::addListed(std::string_view text, Language language) {
  std::string run;
  const auto end = [&] {
    if (text::count(run) >= kShortestListed) ++entries_[text::lowercased(run)].listed;
    run.clear();
  };
  for (const auto character : text::Characters(text)) {
    if (letters::languageOf(character) == language) {
      run += character;
    } else {
      end();
    }
  }
  end();
}

void WordCounts::rank(const std::string& word, std::size_t place) {
  auto& entry = entries_[word];
  if (entry.place == 0) entry.place = place;
}

void WordCounts::addSpoken(std::string_view line, Language language) {
  const auto space = std::min(line.find(' '), line.size());
  const auto word = line.substr(0, space);
  const auto number = line.substr(std::min(space + 1, line.size()));
  std::size_t times = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), times);
  if (error != std::errc() || end != number.data() + number.size() || !isWord(word, language)) {
    return;
  }
  entries_[text::lowercased(word)].spoken += times;
}

std::string WordCounts::table(std::string_view head, std::size_t fewest) const {
  std::string table(head);
  for (const auto& [word, entry] : entries_) {
    if (entry.count < fewest && entry.place == 0 && entry.listed < fewest && entry.spoken == 0) {
      continue;
    }
    table += word + '\t' + std::to_string(entry.count) + '\t' + std::to_string(entry.place) + '\t' +
             std::to_string(entry.listed) + '\t' + std::to_string(entry.spoken) + '\n';
  }
  return table;
}

}  // namespace tessarok::frequencies
