#include "words/IgnoreList.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/Desktop.h"
#include "text/CheckedArithmetic.h"
#include "text/Text.h"
#include "words/RenderedList.h"
#include "words/UserDict.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

/// The rejection that makes a word permanent; stored counts never exceed it.
constexpr std::int64_t kPromotionThreshold = 3;
/// So many words with fewer rejections are kept, so that the file stays small for ever.
constexpr std::size_t kPendingCap = 500;

void appendWord(const std::string& word, std::string& text) {
  text.append(word);
}

void appendReject(const IgnoreList::Counts::value_type& reject, std::string& text) {
  text.append(reject.first).push_back('\t');
  text.append(std::to_string(reject.second));
}

struct State {
  WordSet words;
  WordSet sessionWords;
  IgnoreList::Counts rejectCounts;
  /// The words of `rejectCounts` that are not promoted, those to be forgotten first at the front.
  std::set<std::pair<std::int64_t, std::string>> pending;
  RenderedList<WordSet> ignoredLines{words, &appendWord};
  RenderedList<IgnoreList::Counts> rejectsLines{rejectCounts, &appendReject};
  /// Files that exist but could not be read: never written in this run.
  std::set<std::filesystem::path> protectedFiles;
  /// Files that began with a byte-order mark, and are to do so when they are written again.
  std::set<std::filesystem::path> markedFiles;
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
  if (text && text->starts_with(WordLines::kByteOrderMark)) state().markedFiles.insert(file);
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

template <typename Lines>
void write(const Lines& lines, const std::filesystem::path& file) {
  if (state().inMemoryOnly || state().protectedFiles.contains(file)) return;
  persistenceQueue().async(
      [isMarked = state().markedFiles.contains(file), now = lines.snapshot(), file] {
        auto text = now.text();
        // A word that begins with such a character would lose it at the next start.
        const bool looksMarked = text.starts_with(WordLines::kByteOrderMark);
        if (isMarked || looksMarked) text.insert(0, WordLines::kByteOrderMark);
        save(file, text);
      });
}

void persist() {
  write(state().ignoredLines, ignoredFile());
}

/// Forgets the words with the fewest rejections beyond the cap.
void prunePending() {
  auto& all = state();
  while (all.pending.size() > kPendingCap) {
    const auto word = all.pending.extract(all.pending.begin()).value().second;
    all.rejectCounts.erase(word);
    all.rejectsLines.render(word);
  }
}

void persistRejects() {
  prunePending();
  write(state().rejectsLines, rejectsFile());
}

/// Counts one rejection; the new count.
std::int64_t countRejection(const std::string& word) {
  auto& all = state();
  auto& stored = all.rejectCounts[word];
  const auto count = checkedAdd<std::int64_t>(stored, 1);
  all.pending.erase({stored, word});
  stored = std::min(count, kPromotionThreshold);
  if (stored < kPromotionThreshold) all.pending.insert({stored, word});
  all.rejectsLines.render(word);
  return count;
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

/// Takes one line of "rejects.txt" in; whether it brought back a promoted word.
bool loadReject(std::string_view line) {
  const auto pair = fields(line);
  if (!pair) return false;
  const auto count = parseCount(pair->second);
  if (!count || *count < 1) return false;
  auto word = text::normalizedWord(pair->first);
  auto& all = state();
  if (all.words.contains(word)) return false;
  all.rejectCounts[word] = std::min(*count, kPromotionThreshold);
  if (*count < kPromotionThreshold) return false;
  all.words.insert(std::move(word));
  return true;
}

/// Reads both files; whether that brought back a promoted word.
bool loadFiles() {
  if (const auto text = read(ignoredFile())) {
    WordLines lines(*text, WordLines::Split::atLoneLf);
    while (lines.next())
      state().words.insert(text::normalizedWord(lines.line()));
  }
  const auto text = read(rejectsFile());
  if (!text) return false;
  bool recovered = false;
  WordLines lines(*text, WordLines::Split::atLoneLf);
  while (lines.next())
    recovered = loadReject(lines.line()) || recovered;
  return recovered;
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
  const bool recovered = loadFiles();
  for (const auto& [word, count] : all.rejectCounts) {
    if (count < kPromotionThreshold) all.pending.insert({count, word});
  }
  all.ignoredLines.renderAll();
  all.rejectsLines.renderAll();
  if (recovered && persistRecovered) persist();
}

void IgnoreList::recordRejection(std::string_view rejected) {
  const auto word = text::normalizedWord(rejected);
  auto& all = state();
  if (word.empty() || all.words.contains(word)) return;
  if (countRejection(word) < kPromotionThreshold) {
    all.sessionWords.insert(word);
  } else {
    all.sessionWords.erase(word);
    add(word);
  }
  persistRejects();
}

void IgnoreList::add(std::string_view added) {
  const auto word = text::normalizedWord(added);
  if (word.empty() || !state().words.insert(word).second) return;
  state().ignoredLines.render(word);
  persist();
}

void IgnoreList::flush() {
  persistenceQueue().drain();
}

void IgnoreList::keepInMemory() {
  state().inMemoryOnly = true;
}

}  // namespace tessarok
