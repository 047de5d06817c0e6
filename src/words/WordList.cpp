#include "words/WordList.h"

#include <algorithm>
#include <utility>

#include "text/Text.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

/// How many lines or comparisons go by between two questions whether the list is still wanted.
constexpr std::size_t kPatience = 65536;

/// Thrown when a list is not wanted any more: there is no other way out of a sort.
struct Unwanted {};

/// Counts steps, and asks now and then.
class Doubt final {
 public:
  explicit Doubt(std::function<bool()> isWanted) : isWanted_(std::move(isWanted)) {}
  void step() {
    if (++steps_ % kPatience == 0 && !isWanted_()) throw Unwanted();
  }

 private:
  std::function<bool()> isWanted_;
  std::size_t steps_ = 0;
};

}  // namespace

/// Makes a list out of words in any order.
class WordListMaker final {
 public:
  explicit WordListMaker(std::function<bool()> isWanted) : doubt_(std::move(isWanted)) {}

  void add(std::string_view word) {
    doubt_.step();
    text_.append(word);
    ends_.push_back(text_.size());
  }

  [[nodiscard]] WordList list() {
    auto words = views();
    const auto isBefore = [this](std::string_view a, std::string_view b) {
      doubt_.step();
      return a < b;
    };
    if (!std::is_sorted(words.begin(), words.end(), isBefore)) {
      std::sort(words.begin(), words.end(), isBefore);
    }
    words.erase(std::unique(words.begin(), words.end()), words.end());
    WordList list;
    list.text_.reserve(text_.size());
    list.ends_.reserve(words.size());
    for (const auto word : words) {
      list.text_.append(word);
      list.ends_.push_back(static_cast<std::uint32_t>(list.text_.size()));
    }
    return list;
  }

 private:
  /// Gives the ends up, which take much memory.
  [[nodiscard]] std::vector<std::string_view> views() {
    std::vector<std::string_view> words;
    words.reserve(ends_.size());
    std::size_t start = 0;
    for (const auto end : std::exchange(ends_, {})) {
      words.push_back(std::string_view(text_).substr(start, end - start));
      start = end;
    }
    return words;
  }

  Doubt doubt_;
  std::string text_;
  std::vector<std::size_t> ends_;
};

WordList WordList::parse(std::string_view text, std::function<bool()> isWanted) {
  try {
    WordListMaker maker(std::move(isWanted));
    WordLines lines(text);
    while (lines.next()) {
      const auto word = text::normalizedWord(lines.line());
      if (word.front() != '#') maker.add(word);
    }
    return maker.list();
  } catch (const Unwanted&) {
    return {};
  }
}

WordList WordList::of(const WordSet& words) {
  WordListMaker maker([] { return true; });
  for (const auto& word : words)
    maker.add(word);
  return maker.list();
}

bool WordList::contains(std::string_view sought) const {
  std::size_t first = 0;
  std::size_t count = ends_.size();
  while (count > 0) {
    const auto half = count / 2;
    const auto order = word(first + half).compare(sought);
    if (order == 0) return true;
    if (order < 0) {
      first += half + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return false;
}

WordSet WordList::toSet() const {
  WordSet words;
  for (std::size_t i = 0; i < size(); ++i)
    words.emplace_hint(words.end(), word(i));
  return words;
}

std::string_view WordList::word(std::size_t index) const {
  const std::size_t start = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(text_).substr(start, ends_[index] - start);
}

}  // namespace tessarok
