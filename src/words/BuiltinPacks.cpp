#include "words/BuiltinPacks.h"

#include <atomic>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/ClearedFlag.h"
#include "words/ListQueue.h"
#include "words/Published.h"
#include "words/ResourceLocator.h"
#include "words/WordList.h"

namespace tessarok {

namespace {

struct State {
  Published<WordList> words;
  /// By pack identifier; only packs whose file was read. The queue's.
  std::map<std::string, WordSet> packWords;
  /// The first words have been asked for and are not there.
  std::atomic<bool> isLoading = false;
  /// The main thread's.
  bool wasAsked = false;
};

State& state() {
  static State instance;
  return instance;
}

/// A pack that counts, and where its file is. The bundle may be asked on the main thread only.
struct Enabled {
  std::string id;
  std::optional<std::filesystem::path> location;
};

std::optional<WordSet> readPack(const Enabled& pack) {
  if (!pack.location) return std::nullopt;
  const auto text = platform::desktop().files().read(*pack.location);
  if (!text || !text::isValidUtf8(*text)) return std::nullopt;
  return WordList::parse(*text).toSet();
}

const WordSet* wordsOf(const Enabled& pack) {
  auto& cache = state().packWords;
  if (const auto found = cache.find(pack.id); found != cache.end()) return &found->second;
  auto words = readPack(pack);
  if (!words) return nullptr;
  return &cache.emplace(pack.id, std::move(*words)).first->second;
}

}  // namespace

const std::array<BuiltinPacks::Pack, 3>& BuiltinPacks::all() {
  static const std::array<Pack, 3> packs = {{
      {"it", "IT / разработка", "pack_it", true},
      {"chat", "Интернет-сленг", "pack_chat", true},
      {"gaming", "Геймерский", "pack_gaming", false},
  }};
  return packs;
}

std::string BuiltinPacks::defaultsKey(const Pack& pack) {
  return "pack." + pack.id;
}

bool BuiltinPacks::isEnabled(const Pack& pack) {
  return platform::desktop().userDefaults().boolean(defaultsKey(pack)).value_or(pack.defaultOn);
}

bool BuiltinPacks::contains(std::string_view word) {
  return state().words.value().contains(word);
}

bool BuiltinPacks::isLoading() {
  return state().isLoading;
}

WordSet BuiltinPacks::words() {
  ListQueue::drain();
  return state().words.value().toSet();
}

void BuiltinPacks::rebuild() {
  auto& all = state();
  if (!std::exchange(all.wasAsked, true)) all.isLoading = true;
  std::vector<Enabled> enabled;
  for (const auto& pack : BuiltinPacks::all()) {
    if (isEnabled(pack)) enabled.push_back({pack.id, ResourceLocator::find(pack.resource)});
  }
  ListQueue::async([&all, enabled = std::move(enabled)] {
    const ClearedFlag done(all.isLoading);
    WordSet words;
    for (const auto& pack : enabled) {
      if (const auto* added = wordsOf(pack)) words.insert(added->begin(), added->end());
    }
    all.words.publish(WordList::of(words));
  });
}

}  // namespace tessarok
