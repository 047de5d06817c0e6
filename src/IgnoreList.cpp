#include "IgnoreList.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "CheckedArithmetic.h"
#include "Text.h"
#include "UserDict.h"
#include "WordLines.h"
#include "platform/Desktop.h"

namespace tessarok {

namespace {

/// The rejection that makes a word permanent; stored counts never exceed it.
constexpr std::int64_t kPromotionThreshold = 3;
/// So many words with fewer rejections are kept, so that the file stays small for ever.
constexpr std::size_t kPendingCap = 500;

struct State {
  WordSet words;
  WordSet sessionWords;
  IgnoreList::Counts rejectCounts;
  /// Files that exist but could not be read: never written in this run.
  std::set<std::filesystem::path> protectedFiles;
  bool loaded = false;
  bool inMemoryOnly = false;
};

State& state() {
  static State instance;
  return instance;
}

platform::SerialQueue& persistenceQueue() {
  static const auto queue =
      platform::desktop().serialQueues().create("app.tessarok.ignore-persistence");
  return *queue;
}

std::filesystem::path ignoredFile() {
  return UserDict::directory() / "ignored.txt";
}

std::filesystem::path rejectsFile() {
  return UserDict::directory() / "rejects.txt";
}

std::optional<std::string> read(const std::filesystem::path& file) {
  auto& desktop = platform::desktop();
  std::string error;
  auto text = desktop.files().read(file, &error);
  if (text && text::isValidUtf8(*text)) return text;
  if (!text && !desktop.files().exists(file)) return std::nullopt;
  if (text) error = "the file is not valid UTF-8";
  state().protectedFiles.insert(file);
  desktop.systemLog().write("Tessarok: preserving unreadable " + file.filename().string() +
                            "; learning stays in memory: " + error);
  return std::nullopt;
}

void save(const std::filesystem::path& file, const std::string& text) {
  auto& desktop = platform::desktop();
  // A folder that cannot be made shows when the file is written.
  static_cast<void>(desktop.files().createDirectories(file.parent_path()));
  const auto error = desktop.files().writeAtomically(file, text);
  if (!error) return;
  desktop.systemLog().write("Tessarok: could not save " + file.filename().string() + ": " + *error);
}

void write(std::string text, const std::filesystem::path& file) {
  if (state().inMemoryOnly || state().protectedFiles.contains(file)) return;
  persistenceQueue().async([text = std::move(text), file] { save(file, text); });
}

/// Every file ends with a line break, an empty one consists of it.
std::string lines(const std::vector<std::string>& records) {
  if (records.empty()) return "\n";
  std::string text;
  for (const auto& record : records)
    text.append(record).push_back('\n');
  return text;
}

void persist() {
  const auto& words = state().words;
  write(lines({words.begin(), words.end()}), ignoredFile());
}

/// Forgets the words with the fewest rejections beyond the cap.
void prunePending(IgnoreList::Counts& counts) {
  std::vector<IgnoreList::Counts::const_iterator> pending;
  for (auto entry = counts.begin(); entry != counts.end(); ++entry) {
    if (entry->second < kPromotionThreshold) pending.push_back(entry);
  }
  if (pending.size() <= kPendingCap) return;
  // The map is in the order of the words, so a stable sort leaves ties in that order.
  std::stable_sort(pending.begin(), pending.end(),
                   [](auto a, auto b) { return a->second < b->second; });
  pending.resize(pending.size() - kPendingCap);
  for (const auto entry : pending)
    counts.erase(entry);
}

void persistRejects() {
  prunePending(state().rejectCounts);
  std::vector<std::string> records;
  records.reserve(state().rejectCounts.size());
  for (const auto& [word, count] : state().rejectCounts) {
    records.push_back(word + '\t' + std::to_string(count));
  }
  write(lines(records), rejectsFile());
}

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

/// The two fields of a line, or absent when there are not exactly two that are not empty.
std::optional<std::pair<std::string_view, std::string_view>> fields(std::string_view line) {
  std::vector<std::string_view> pieces;
  while (!line.empty()) {
    const auto tab = line.find('\t');
    if (tab != 0) pieces.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) break;
    line.remove_prefix(tab + 1);
  }
  if (pieces.size() != 2) return std::nullopt;
  return std::pair(pieces[0], pieces[1]);
}

/// Takes one line of "rejects.txt" in; whether it brought back a promoted word.
bool loadReject(std::string_view line) {
  const auto pair = fields(line);
  if (!pair) return false;
  const auto count = parseCount(pair->second);
  if (!count || *count < 1) return false;
  auto word = text::normalizedWord(pair->first);
  auto& all = state();
  if (word.empty() || all.words.contains(word)) return false;
  all.rejectCounts[word] = std::min(*count, kPromotionThreshold);
  if (*count < kPromotionThreshold) return false;
  all.words.insert(std::move(word));
  return true;
}

}  // namespace

const WordSet& IgnoreList::words() {
  return state().words;
}

const WordSet& IgnoreList::sessionWords() {
  return state().sessionWords;
}

const IgnoreList::Counts& IgnoreList::rejectCounts() {
  return state().rejectCounts;
}

void IgnoreList::load(bool persistRecovered) {
  auto& all = state();
  if (all.loaded) return;
  all.loaded = true;
  if (const auto text = read(ignoredFile())) {
    WordLines lines(*text, WordLines::Split::atLoneLf);
    while (lines.next())
      all.words.insert(text::normalizedWord(lines.line()));
  }
  const auto text = read(rejectsFile());
  if (!text) return;
  bool recovered = false;
  WordLines lines(*text, WordLines::Split::atLoneLf);
  while (lines.next())
    recovered = loadReject(lines.line()) || recovered;
  if (recovered && persistRecovered) persist();
}

void IgnoreList::recordRejection(std::string_view rejected) {
  const auto word = text::normalizedWord(rejected);
  auto& all = state();
  if (word.empty() || all.words.contains(word)) return;
  auto& stored = all.rejectCounts[word];
  const auto count = checkedAdd<std::int64_t>(stored, 1);
  stored = std::min(count, kPromotionThreshold);
  if (count < kPromotionThreshold) {
    all.sessionWords.insert(word);
  } else {
    all.sessionWords.erase(word);
    add(word);
  }
  persistRejects();
}

void IgnoreList::add(std::string_view added) {
  auto word = text::normalizedWord(added);
  if (word.empty() || !state().words.insert(std::move(word)).second) return;
  persist();
}

void IgnoreList::flush() {
  persistenceQueue().drain();
}

void IgnoreList::keepInMemory() {
  state().inMemoryOnly = true;
}

}  // namespace tessarok
