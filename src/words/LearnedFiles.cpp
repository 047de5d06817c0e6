#include "words/LearnedFiles.h"

#include <utility>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/ForgetRequest.h"
#include "words/UserDict.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

using Effect = LearnedLists::Effect;

/// How many ticks a request to forget is left for other copies to see, which look at each of
/// theirs.
constexpr int kTicksToObey = 5;
/// In place of a number of ticks: the file is no request.
constexpr int kForeign = -1;

std::filesystem::path ignoredFile() {
  return UserDict::directory() / "ignored.txt";
}

std::filesystem::path rejectsFile() {
  return UserDict::directory() / "rejects.txt";
}

platform::Files& files() {
  return platform::desktop().files();
}

}  // namespace

void LearnedFiles::join(Company company) {
  company_ = company;
  const auto obstacle = claim();
  if (!obstacle) {
    role_ = Role::writer;
    return;
  }
  role_ = obstacle->isHeldByAnother ? Role::guest : Role::inMemory;
  if (role_ == Role::guest) return;
  platform::desktop().systemLog().write("Tessarok: " + obstacle->message +
                                        "; what is learned here stays in memory");
}

std::optional<FolderLock::Obstacle> LearnedFiles::claim() {
  if (company_ == Company::ignored || lock_) return std::nullopt;
  if (company_ == Company::many) return claimAsOneOfMany();
  // Only copies that may be many make this file: without it there is none to share with.
  if (!files().exists(UserDict::directory() / FolderLock::kLearning)) return std::nullopt;
  return FolderLock::acquire(FolderLock::kLearning, lock_);
}

std::optional<FolderLock::Obstacle> LearnedFiles::claimAsOneOfMany() {
  const FolderLock::Obstacle other{.message = {}, .isHeldByAnother = true};
  const auto isOtherThere = [] {
    return files().isLockedByAnother(UserDict::directory() / FolderLock::kInstance);
  };
  if (isOtherThere()) return other;
  // First the own lock, then the look at the other one: of two that start at once, each in its
  // own order, one at least sees the other.
  if (auto obstacle = FolderLock::acquire(FolderLock::kLearning, lock_)) return obstacle;
  if (!isOtherThere()) return std::nullopt;
  lock_.reset();
  return other;
}

void LearnedFiles::load(Recovery recovery) {
  bool hasRecovered = false;
  lists_ = readLists(hasRecovered);
  isLoaded_ = true;
  if (role_ != Role::writer) return;
  if (hasRecovered && recovery == Recovery::onDisk) saveIgnored();
  if (company_ != Company::ignored) countHandedOver();
}

LearnedLists LearnedFiles::readLists(bool& recovered) {
  LearnedLists lists;
  if (const auto text = read(ignoredFile())) lists.readIgnored(*text);
  auto rejects = read(rejectsFile());
  const bool mayWrite = role_ == Role::writer && company_ != Company::ignored;
  if (mayWrite && !protectedFiles_.contains(rejectsFile())) {
    if (auto receipt = HandedOver::readReceipt()) {
      rejects = std::move(receipt->rejects);
      counted_ = std::move(receipt->names);
    }
  }
  recovered = rejects && lists.readRejects(*rejects);
  return lists;
}

std::optional<std::string> LearnedFiles::read(const std::filesystem::path& file) {
  if (protectedFiles_.contains(file)) return std::nullopt;
  std::string error;
  auto text = files().read(file, &error);
  if (text && text->starts_with(WordLines::kByteOrderMark)) markedFiles_.insert(file);
  if (text && text::isValidUtf8(*text)) return text;
  if (!text && !files().exists(file)) return std::nullopt;
  if (text) error = "the file is not valid UTF-8";
  protectedFiles_.insert(file);
  platform::desktop().systemLog().write("Tessarok: preserving unreadable " +
                                        file.filename().string() +
                                        "; learning stays in memory: " + error);
  return std::nullopt;
}

void LearnedFiles::reject(const std::string& word) {
  const auto effect = lists_.reject(word, 1);
  if (effect == Effect::none) return;
  if (role_ != Role::writer) return keep(word, 1);
  if (effect == Effect::promoted) saveIgnored();
  saveRejects();
}

void LearnedFiles::add(const std::string& word) {
  if (!lists_.add(word)) return;
  if (role_ != Role::writer) return keep(word, LearnedLists::kPromotionThreshold);
  saveIgnored();
}

void LearnedFiles::keep(const std::string& word, std::int64_t rejections) {
  unsaved_[word] += rejections;
  if (role_ == Role::guest) handOver();
}

void LearnedFiles::handOver() {
  if (unsaved_.empty()) return;
  if (const auto failure = HandedOver::write(unsaved_)) {
    return complain("what was learned", failure.reason());
  }
  unsaved_.clear();
}

bool LearnedFiles::tick() {
  if (company_ == Company::ignored || !isLoaded_) return false;
  report_ = Report::once;
  const auto before = lists_.words().size();
  const auto forgotten = forgotten_.size();
  if (role_ == Role::writer) {
    countHandedOver();
  } else if (!tryToWrite() && role_ == Role::guest) {
    handOver();
  }
  const bool hasObeyed = obeyForgetRequests();
  report_ = Report::always;
  return hasObeyed || forgotten_.size() != forgotten || lists_.words().size() != before;
}

bool LearnedFiles::tryToWrite() {
  if (const auto obstacle = claim()) {
    role_ = obstacle->isHeldByAnother ? Role::guest : Role::inMemory;
    return false;
  }
  role_ = Role::writer;
  takeOver();
  return true;
}

void LearnedFiles::takeOver() {
  bool hasMore = false;
  auto read = readLists(hasMore);
  // What nobody can read nobody else has written since: what is known here is all there is. Else
  // what this copy has learned is in `unsaved_` or handed over, and a word that the list lacks now
  // has been forgotten.
  if (protectedFiles_.contains(ignoredFile())) {
    for (const auto& word : lists_.words())
      hasMore = read.add(word) || hasMore;
  }
  const auto own = protectedFiles_.contains(rejectsFile()) ? lists_.counts() : unsaved_;
  const auto former = std::exchange(lists_, std::move(read));
  for (const auto& [word, times] : own)
    hasMore = lists_.reject(word, times) == Effect::promoted || hasMore;
  for (const auto& word : former.words()) {
    if (!lists_.words().contains(word)) forgotten_.insert(word);
  }
  unsaved_.clear();
  if (hasMore) saveIgnored();
  if (!countHandedOver() && !own.empty()) saveRejects();
}

bool LearnedFiles::countHandedOver() {
  if (!protectedFiles_.empty()) return false;
  bool isPromoted = false;
  for (const auto& name : HandedOver::find()) {
    if (counted_.contains(name) || foreign_.contains(name)) continue;
    const auto rejections = HandedOver::read(name);
    if (!rejections) {
      foreign_.insert(name);
      continue;
    }
    for (const auto& [word, times] : *rejections)
      isPromoted = lists_.reject(word, times) == Effect::promoted || isPromoted;
    counted_.insert(name);
  }
  if (counted_.empty()) return false;
  if (isPromoted) saveIgnored();
  saveRejects();
  return true;
}

platform::Failure LearnedFiles::forget(const WordSet& words) {
  if (role_ == Role::inMemory) return platform::Failure("the lists cannot be locked");
  if (role_ == Role::guest) return ForgetRequest::write(words);
  if (!protectedFiles_.empty()) return platform::Failure("the lists cannot be read");
  // Whoever asked is told, and nobody else has to be.
  const auto report = std::exchange(report_, Report::never);
  const bool isDone = forgetHere(words);
  report_ = report;
  return isDone ? platform::Failure::none() : platform::Failure(lastFailure_);
}

bool LearnedFiles::obeyForgetRequests() {
  const auto requests = ForgetRequest::find();
  std::erase_if(obeyed_, [&](const auto& seen) { return !requests.contains(seen.first); });
  bool hasForgotten = false;
  for (const auto& name : requests) {
    const auto [seen, isNew] = obeyed_.try_emplace(name, 0);
    if (!isNew) {
      if (seen->second != kForeign) ++seen->second;
      if (seen->second > kTicksToObey && role_ == Role::writer) ForgetRequest::remove(name);
      continue;
    }
    const auto words = ForgetRequest::read(name);
    if (!words) {
      seen->second = kForeign;
      continue;
    }
    forgetHere(*words);
    hasForgotten = true;
  }
  return hasForgotten;
}

bool LearnedFiles::forgetHere(const WordSet& words) {
  bool hasForgotten = false;
  for (const auto& word : words) {
    hasForgotten = lists_.forget(word) || hasForgotten;
    unsaved_.erase(word);
  }
  forgotten_.insert(words.begin(), words.end());
  if (!hasForgotten || role_ != Role::writer) return true;
  // The counts first: with three rejections a word would be put on its list again.
  return saveRejects() && saveIgnored();
}

void LearnedFiles::leave() {
  if (company_ == Company::ignored) return;
  tick();
  lock_.reset();
  company_ = Company::ignored;
}

bool LearnedFiles::saveIgnored() {
  return save(ignoredFile(), lists_.ignoredText());
}

bool LearnedFiles::saveRejects() {
  lists_.prune();
  const auto text = lists_.rejectsText();
  if (!counted_.empty()) return saveCounted(text);
  return save(rejectsFile(), text);
}

bool LearnedFiles::saveCounted(const std::string& text) {
  if (const auto failure = HandedOver::writeReceipt({counted_, text})) {
    complain("rejects.txt", failure.reason());
    return false;
  }
  if (!save(rejectsFile(), text)) return false;
  counted_ = HandedOver::remove(counted_);
  // What could not be removed must not be counted again, by nobody.
  if (counted_.empty()) HandedOver::removeReceipt();
  return true;
}

bool LearnedFiles::save(const std::filesystem::path& file, const std::string& text) {
  if (protectedFiles_.contains(file)) return false;
  // A folder that cannot be made shows when the file is written.
  static_cast<void>(files().createDirectories(file.parent_path()));
  // A word that begins with such a character would lose it at the next start.
  const bool isMarked = markedFiles_.contains(file) || text.starts_with(WordLines::kByteOrderMark);
  const auto failure = files().writeAtomically(
      file, isMarked ? std::string(WordLines::kByteOrderMark) + text : text);
  if (!failure) {
    lastComplaint_.clear();
    return true;
  }
  complain(file.filename().string(), failure.reason());
  return false;
}

void LearnedFiles::complain(const std::string& what, const std::string& reason) {
  lastFailure_ = what + ": " + reason;
  const auto message = "could not save " + lastFailure_;
  const bool isSaidBefore = std::exchange(lastComplaint_, message) == message;
  if (report_ == Report::never || (isSaidBefore && report_ == Report::once)) return;
  platform::desktop().systemLog().write("Tessarok: " + message);
}

}  // namespace tessarok
