#include "KeyNgrams.h"

#include <algorithm>

#include "KeyText.h"

namespace tessarok::makedata {

namespace {

constexpr std::string_view kMarks = "^$";
constexpr std::size_t kSymbols = kKeys.size() + kMarks.size();
constexpr std::size_t kPairCells = kSymbols * kSymbols;
constexpr std::size_t kTripleCells = kPairCells * kSymbols;

constexpr double kPairShare = 0.7;
constexpr double kTripleShare = 0.3;

std::size_t indexOf(char symbol) {
  if (symbol >= 'a' && symbol <= 'z') return static_cast<std::size_t>(symbol - 'a');
  if (symbol == '^') return kKeys.size();
  if (symbol == '$') return kKeys.size() + 1;
  return kKeys.find(symbol);
}

char symbolAt(std::size_t index) {
  return index < kKeys.size() ? kKeys[index] : kMarks[index - kKeys.size()];
}

std::size_t cellOf(std::string_view group) {
  std::size_t cell = 0;
  for (const char symbol : group)
    cell = cell * kSymbols + indexOf(symbol);
  return cell;
}

std::string marked(std::string_view keys) {
  return "^" + std::string(keys) + "$";
}

void addGroups(std::string_view text, std::size_t length, double weight,
               std::vector<double>& cells) {
  for (std::size_t i = 0; i + length <= text.size(); ++i) {
    cells[cellOf(text.substr(i, length))] += weight;
  }
}

double knownShare(std::string_view text, std::size_t length, double floor,
                  const std::vector<double>& cells) {
  if (text.size() < length) return 1;
  std::size_t known = 0;
  for (std::size_t i = 0; i + length <= text.size(); ++i) {
    if (cells[cellOf(text.substr(i, length))] >= floor) ++known;
  }
  return static_cast<double>(known) / static_cast<double>(text.size() - length + 1);
}

std::vector<std::string> groupsFrom(const std::vector<double>& cells, std::size_t length,
                                    double floor) {
  std::vector<std::string> groups;
  for (std::size_t cell = 0; cell < cells.size(); ++cell) {
    if (cells[cell] < floor || cells[cell] <= 0) continue;
    std::string group(length, ' ');
    std::size_t rest = cell;
    for (std::size_t i = length; i-- > 0; rest /= kSymbols)
      group[i] = symbolAt(rest % kSymbols);
    groups.push_back(group);
  }
  return groups;
}

}  // namespace

KeyNgrams::KeyNgrams() : pairs_(kPairCells), triples_(kTripleCells), marked_(kTripleCells) {}

void KeyNgrams::add(std::string_view keys, double perMillion) {
  addGroups(keys, 2, perMillion, pairs_);
  addGroups(keys, 3, perMillion, triples_);
  addGroups(marked(keys), 3, perMillion, marked_);
}

bool KeyNgrams::hasImpossible(std::string_view keys) const {
  std::size_t cell = indexOf('^');
  std::size_t symbols = 1;
  const auto isImpossible = [&](char symbol) {
    cell = (cell * kSymbols + indexOf(symbol)) % kTripleCells;
    return ++symbols >= 3 && (marked_[cell] < floors_.marked || marked_[cell] <= 0);
  };
  return std::ranges::any_of(keys, isImpossible) || isImpossible('$');
}

double KeyNgrams::plausibility(std::string_view keys) const {
  // A group that was never counted is unknown whatever the floor.
  constexpr double kSeen = 1e-12;
  const double floor = floors_.plain > kSeen ? floors_.plain : kSeen;
  return knownShare(keys, 2, floor, pairs_) * kPairShare +
         knownShare(keys, 3, floor, triples_) * kTripleShare;
}

std::vector<std::string> KeyNgrams::pairs() const {
  return groupsFrom(pairs_, 2, floors_.plain);
}

std::vector<std::string> KeyNgrams::triples() const {
  return groupsFrom(triples_, 3, floors_.plain);
}

std::vector<std::string> KeyNgrams::markedTriples() const {
  return groupsFrom(marked_, 3, floors_.marked);
}

}  // namespace tessarok::makedata
