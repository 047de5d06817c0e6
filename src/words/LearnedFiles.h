#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/FileLock.h"
#include "words/FolderLock.h"
#include "words/HandedOver.h"
#include "words/LearnedLists.h"
#include "words/WordSet.h"

namespace tessarok {

/// The learned lists and their files. Of all running copies one writes these; each other hands
/// over what it learns, and takes the first one's place when that has ended. All calls come from
/// one queue, where it may take as long as the disk wants.
class LearnedFiles final {
 public:
  /// What kind of copy this is to others.
  enum class Company {
    /// It writes, whoever else there may be.
    ignored,
    /// Of its kind only one runs, and `FolderLock::kInstance` is held. It writes unless one of the
    /// other kind does so already.
    onlyOne,
    /// There may be many. One of them writes while no copy of the other kind runs.
    many,
  };
  /// Whether promoted words that are missing from their list are written back to it.
  enum class Recovery { inMemory, onDisk };

  LearnedFiles() = default;
  LearnedFiles(const LearnedFiles&) = delete;
  LearnedFiles& operator=(const LearnedFiles&) = delete;

  [[nodiscard]] const LearnedLists& lists() const { return lists_; }

  /// Finds out who writes. What keeps this copy from it is told to the system log, but for another
  /// copy's doing so.
  void join(Company company);
  void load(Recovery recovery);
  void reject(const std::string& word);
  void add(const std::string& word);
  /// Counts what other copies have handed over, or takes the writer's place, if there is something
  /// to do; does what `ForgetRequest`s say. Whether words have come to the list or gone from it.
  bool tick();
  /// The words that had to be forgotten since the last call.
  [[nodiscard]] WordSet takeForgotten() { return std::exchange(forgotten_, {}); }
  /// Takes words back in every copy: at once in the files where no other copy writes them, else by
  /// asking the others to.
  [[nodiscard]] platform::Failure forget(const WordSet& words);
  /// The last thing in a run: what was learned is in the files or handed over, and another copy
  /// may write.
  void leave();

 private:
  enum class Role {
    /// It alone writes the files.
    writer,
    /// Another copy does.
    guest,
    /// It cannot be known who does: nothing is written.
    inMemory,
  };
  /// Whether a write that fails is told, and again when it fails in the same way.
  enum class Report { always, once, never };

  [[nodiscard]] std::optional<FolderLock::Obstacle> claim();
  [[nodiscard]] std::optional<FolderLock::Obstacle> claimAsOneOfMany();
  bool tryToWrite();
  void takeOver();
  void keep(const std::string& word, std::int64_t rejections);
  void handOver();
  bool countHandedOver();
  [[nodiscard]] LearnedLists readLists(bool& recovered);
  [[nodiscard]] std::optional<std::string> read(const std::filesystem::path& file);
  bool save(const std::filesystem::path& file, const std::string& text);
  bool saveIgnored();
  bool saveRejects();
  bool saveCounted(const std::string& text);
  bool obeyForgetRequests();
  bool forgetHere(const WordSet& words);
  /// Tells what could not be saved, and why.
  void complain(const std::string& what, const std::string& reason);

  Company company_ = Company::ignored;
  Role role_ = Role::writer;
  /// Null also for a writer that has nobody to share with.
  std::unique_ptr<platform::FileLock> lock_;
  LearnedLists lists_;
  bool isLoaded_ = false;
  /// Learned by this copy and in no file yet.
  LearnedLists::Counts unsaved_;
  /// Handed over and counted; the files are still there.
  HandedOver::Names counted_;
  /// Named like what was handed over, and something else.
  HandedOver::Names foreign_;
  /// The requests that were obeyed, and how many ticks ago.
  std::map<std::string, int, std::less<>> obeyed_;
  WordSet forgotten_;
  /// Files that exist but could not be read: never written in this run.
  std::set<std::filesystem::path> protectedFiles_;
  /// Files that began with a byte-order mark, and are to do so when they are written again.
  std::set<std::filesystem::path> markedFiles_;
  Report report_ = Report::always;
  std::string lastComplaint_;
  /// What could not be saved last, and why.
  std::string lastFailure_;
};

}  // namespace tessarok
