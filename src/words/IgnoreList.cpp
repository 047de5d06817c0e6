#include "words/IgnoreList.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/ClearedFlag.h"
#include "words/LearnedFiles.h"
#include "words/Published.h"
#include "words/WordList.h"

namespace tessarok {

namespace {

struct State {
  /// The permanent list as it was when it was read, or when many words came at once.
  Published<WordList> listed;
  /// What was learned since the program started, permanent or not.
  WordSet learned;
  /// The queue's.
  LearnedFiles files;
  /// Taken back by the queue, and not yet from what was learned.
  std::mutex forgottenMutex;
  WordSet forgotten;
  std::atomic<bool> isLoading = false;
  std::atomic<bool> isTicking = false;
  bool wasLoaded = false;
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

/// Nothing that a job does may end the program: without memory a word is not learned.
void onQueue(std::function<void(LearnedFiles&)> job) {
  persistenceQueue().async([job = std::move(job)] {
    try {
      job(state().files);
    } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): see above
    }
  });
}

void publish(const LearnedFiles& files) {
  state().listed.publish(WordList::of(files.lists().words()));
}

void takeBackForgotten() {
  auto& all = state();
  const std::lock_guard lock(all.forgottenMutex);
  for (const auto& word : all.forgotten)
    all.learned.erase(word);
  all.forgotten.clear();
}

/// The lists as they are when everything that was asked for is done.
const LearnedLists& settledLists() {
  persistenceQueue().drain();
  return state().files.lists();
}

}  // namespace

bool IgnoreList::contains(std::string_view word) {
  auto& all = state();
  return all.listed.value().contains(word) || all.learned.contains(word);
}

bool IgnoreList::isLoading() {
  return state().isLoading;
}

WordSet IgnoreList::words() {
  return settledLists().words();
}

WordSet IgnoreList::sessionWords() {
  auto words = state().learned;
  const auto& permanent = settledLists().words();
  std::erase_if(words, [&](const auto& word) { return permanent.contains(word); });
  return words;
}

IgnoreList::Counts IgnoreList::rejectCounts() {
  return settledLists().counts();
}

void IgnoreList::join(Company company) {
  onQueue([company](LearnedFiles& files) { files.join(company); });
}

void IgnoreList::load(Recovery recovery) {
  auto& all = state();
  if (std::exchange(all.wasLoaded, true)) return;
  all.isLoading = true;
  onQueue([&all, recovery](LearnedFiles& files) {
    const ClearedFlag done(all.isLoading);
    files.load(recovery);
    publish(files);
  });
}

void IgnoreList::recordRejection(std::string_view rejected) {
  auto word = text::normalizedWord(rejected);
  auto& all = state();
  if (word.empty() || all.listed.value().contains(word)) return;
  all.learned.insert(word);
  onQueue([word = std::move(word)](LearnedFiles& files) { files.reject(word); });
}

void IgnoreList::add(std::string_view added) {
  auto word = text::normalizedWord(added);
  if (word.empty()) return;
  state().learned.insert(word);
  onQueue([word = std::move(word)](LearnedFiles& files) { files.add(word); });
}

void IgnoreList::tick() {
  auto& all = state();
  takeBackForgotten();
  // A slow disk is not asked again before it has answered.
  if (all.isTicking.exchange(true)) return;
  onQueue([&all](LearnedFiles& files) {
    const ClearedFlag done(all.isTicking);
    all.listed.forgetOld();
    if (files.tick()) publish(files);
    const std::lock_guard lock(all.forgottenMutex);
    all.forgotten.merge(files.takeForgotten());
  });
}

void IgnoreList::flush() {
  persistenceQueue().drain();
}

void IgnoreList::leave() {
  onQueue([](LearnedFiles& files) { files.leave(); });
  flush();
}

}  // namespace tessarok
