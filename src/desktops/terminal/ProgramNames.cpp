#include "desktops/terminal/ProgramNames.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "words/Published.h"

namespace tessarok::terminal {

namespace {

namespace fs = std::filesystem;

/// Seconds after which names are read anew: somebody may have installed something.
constexpr double kFresh = 20;
/// Seconds after which a folder does not answer, and a thread more is worth its while.
constexpr double kStuck = 0.5;
/// No more threads than that wait for folders.
constexpr std::size_t kMostThreads = 4;

/// Whether an entry may be run is not asked: that would be a question to the disk for each, and
/// whoever gives a file there the name of a word means the file.
std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  return names;
}

}  // namespace

struct ProgramNames::State {
  struct Folder {
    std::string path;
    /// A thread has taken it; it does not come back from a folder that does not answer.
    bool isTaken = false;
    bool isDue = false;
    /// Sorted.
    Published<std::vector<std::string>> names;
  };

  State(const std::vector<std::string>& paths, Reader read)
      : reader(std::move(read)), folders(paths.size()) {
    for (std::size_t i = 0; i < paths.size(); ++i)
      folders[i].path = paths[i];
  }

  /// The next folder to read, taken; absent when there is none, and then the thread is at its end.
  Folder* take() {
    const std::lock_guard lock(mutex);
    const auto next = std::find_if(folders.begin(), folders.end(), [](const Folder& folder) {
      return folder.isDue && !folder.isTaken;
    });
    if (isEnding || next == folders.end()) {
      --threads;
      return nullptr;
    }
    next->isTaken = true;
    next->isDue = false;
    return &*next;
  }

  void giveBack(Folder& folder) {
    const std::lock_guard lock(mutex);
    folder.isTaken = false;
  }

  void readAll() {
    while (auto* const folder = take()) {
      auto names = reader(folder->path);
      std::sort(names.begin(), names.end());
      folder->names.publish(std::move(names));
      giveBack(*folder);
    }
  }

  const Reader reader;
  std::vector<Folder> folders;
  /// For `isTaken`, `isDue` and what follows.
  std::mutex mutex;
  std::size_t threads = 0;
  bool isEnding = false;
  /// The main thread's.
  std::optional<double> askedAt;
  std::optional<double> startedAt;
};

ProgramNames::ProgramNames(std::vector<std::string> folders)
    : ProgramNames(std::move(folders), namesIn) {}

ProgramNames::ProgramNames(std::vector<std::string> folders, Reader reader)
    : state_(std::make_shared<State>(folders, std::move(reader))) {}

ProgramNames::~ProgramNames() {
  const std::lock_guard lock(state_->mutex);
  state_->isEnding = true;
}

void ProgramNames::refresh(double now) {
  auto& state = *state_;
  {
    const std::unique_lock lock(state.mutex, std::try_to_lock);
    if (!lock.owns_lock()) return;
    if (!state.askedAt || now - *state.askedAt >= kFresh) {
      state.askedAt = now;
      for (auto& folder : state.folders)
        folder.isDue = true;
    }
    const bool isWork =
        std::any_of(state.folders.begin(), state.folders.end(),
                    [](const State::Folder& folder) { return folder.isDue && !folder.isTaken; });
    const bool isServed = state.threads > 0 && state.startedAt && now - *state.startedAt < kStuck;
    if (!isWork || isServed || state.threads >= kMostThreads) return;
    ++state.threads;
    state.startedAt = now;
  }
  try {
    // Nobody waits for its end: it may be caught in a folder for good.
    std::thread([state = state_] { state->readAll(); }).detach();
  } catch (const std::system_error&) {
    const std::lock_guard lock(state.mutex);
    --state.threads;
  }
}

bool ProgramNames::contains(std::string_view name) {
  return std::any_of(state_->folders.begin(), state_->folders.end(), [&](State::Folder& folder) {
    const auto& names = folder.names.value();
    return std::binary_search(names.begin(), names.end(), name);
  });
}

}  // namespace tessarok::terminal
