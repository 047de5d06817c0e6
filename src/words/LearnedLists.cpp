#include "words/LearnedLists.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <vector>

#include "text/CheckedArithmetic.h"
#include "text/Text.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

/// A decimal number with an optional sign and nothing else; absent for anything that is not one
/// or does not fit.
std::optional<std::int64_t> parseCount(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return count;
}

/// The two fields of a trimmed line, or absent when there are not exactly two that are not empty.
std::optional<std::pair<std::string_view, std::string_view>> fields(std::string_view line) {
  std::vector<std::string_view> pieces;
  while (true) {
    const auto tab = line.find('\t');
    if (tab != 0) pieces.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) break;
    line.remove_prefix(tab + 1);
  }
  if (pieces.size() != 2) return std::nullopt;
  return std::pair(pieces[0], pieces[1]);
}

/// Every list ends with a line break, an empty one consists of it.
std::string orLineBreak(std::string text) {
  return text.empty() ? "\n" : std::move(text);
}

}  // namespace

void LearnedLists::readIgnored(std::string_view text) {
  WordLines lines(text, WordLines::Split::atLoneLf);
  while (lines.next())
    words_.insert(text::normalizedWord(lines.line()));
}

bool LearnedLists::readRejects(std::string_view text) {
  bool recovered = false;
  WordLines lines(text, WordLines::Split::atLoneLf);
  while (lines.next()) {
    const auto entry = parseLine(lines.line());
    if (!entry || words_.contains(entry->first)) continue;
    const auto& [word, count] = *entry;
    auto& stored = counts_[word];
    pending_.erase({stored, word});
    stored = std::min(count, kPromotionThreshold);
    if (stored < kPromotionThreshold) {
      pending_.insert({stored, word});
    } else {
      words_.insert(word);
      recovered = true;
    }
  }
  return recovered;
}

LearnedLists::Effect LearnedLists::reject(const std::string& word, std::int64_t times) {
  if (words_.contains(word)) return Effect::none;
  auto& stored = counts_[word];
  pending_.erase({stored, word});
  stored = std::min(checkedAdd(stored, std::min(times, kPromotionThreshold)), kPromotionThreshold);
  if (stored < kPromotionThreshold) {
    pending_.insert({stored, word});
    return Effect::counted;
  }
  words_.insert(word);
  return Effect::promoted;
}

bool LearnedLists::add(std::string word) {
  return words_.insert(std::move(word)).second;
}

bool LearnedLists::forget(const std::string& word) {
  const bool wasListed = words_.erase(word) > 0;
  const auto counted = counts_.find(word);
  if (counted == counts_.end()) return wasListed;
  pending_.erase({counted->second, word});
  counts_.erase(counted);
  return true;
}

void LearnedLists::prune() {
  while (pending_.size() > kPendingCap)
    counts_.erase(pending_.extract(pending_.begin()).value().second);
}

std::string LearnedLists::ignoredText() const {
  std::string text;
  for (const auto& word : words_)
    text.append(word).push_back('\n');
  return orLineBreak(std::move(text));
}

std::string LearnedLists::rejectsText() const {
  return orLineBreak(linesOf(counts_));
}

std::string LearnedLists::linesOf(const Counts& counts) {
  std::string text;
  for (const auto& [word, count] : counts)
    text.append(word).append("\t").append(std::to_string(count)).push_back('\n');
  return text;
}

std::optional<LearnedLists::Counts::value_type> LearnedLists::parseLine(std::string_view line) {
  const auto pair = fields(line);
  if (!pair) return std::nullopt;
  const auto count = parseCount(pair->second);
  if (!count || *count < 1) return std::nullopt;
  return Counts::value_type(text::normalizedWord(pair->first), *count);
}

}  // namespace tessarok
