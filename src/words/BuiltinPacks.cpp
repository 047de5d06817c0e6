#include "words/BuiltinPacks.h"

#include <map>
#include <optional>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/ResourceLocator.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

struct State {
  WordSet words;
  /// By pack identifier; only packs whose file was read.
  std::map<std::string, WordSet> packWords;
};

State& state() {
  static State instance;
  return instance;
}

std::optional<WordSet> readPack(const BuiltinPacks::Pack& pack) {
  const auto location = ResourceLocator::url(pack.resource);
  if (!location) return std::nullopt;
  const auto text = platform::desktop().files().read(*location);
  if (!text || !text::isValidUtf8(*text)) return std::nullopt;
  return UserDict::parse(*text);
}

const WordSet* wordsOf(const BuiltinPacks::Pack& pack) {
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

const WordSet& BuiltinPacks::words() {
  return state().words;
}

void BuiltinPacks::rebuild() {
  WordSet words;
  for (const auto& pack : all()) {
    if (!isEnabled(pack)) continue;
    if (const auto* packWords = wordsOf(pack)) words.insert(packWords->begin(), packWords->end());
  }
  state().words = std::move(words);
}

}  // namespace tessarok
