#include "typing/InputSource.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Desktop.h"
#include "platform/LayoutIdentifiers.h"
#include "text/Text.h"
#include "typing/Uptime.h"

namespace tessarok {

namespace {

/// The main block of the keyboard.
constexpr std::uint16_t kLastScannedKey = 50;
/// The key beside the left Shift, which only ISO keyboards have.
constexpr std::uint16_t kIsoOnlyKey = 10;
/// A change to the layout that was just selected counts as the program's own for so long, seconds.
constexpr double kOwnSwitchInterval = 2.0;
constexpr double kRetryDelay = 30.0;

/// The layouts that maps were built from, and for which keyboard.
struct PreparedPair {
  std::string englishID;
  std::string russianID;
  std::uint32_t keyboardType = 0;

  bool operator==(const PreparedPair&) const = default;
};

struct State {
  std::vector<InputSource::Handle> cachedLayouts;
  std::optional<std::string> preferredEnglishID;
  std::optional<std::string> preferredRussianID;
  std::optional<InputSource::RequestedSelection> requestedSelection;
  bool didPrepare = false;

  std::optional<std::string> observedSourceID;
  std::optional<std::uint32_t> preparedKeyboardType;
  bool canProcessCurrentLayout = false;
  std::optional<PreparedPair> preparedPair;
  double nextPreparationRetry = 0;
  bool needsPreparation = false;

  std::optional<std::string>& preferredID(Language language) {
    return language == Language::russian ? preferredRussianID : preferredEnglishID;
  }
};

State& state() {
  static State instance;
  return instance;
}

std::uint32_t keyboardType() {
  return platform::desktop().keyboard().type();
}

constexpr std::array<Language, 2> kLanguages = {Language::english, Language::russian};

bool isKnown(std::string_view identifier) {
  return std::any_of(kLanguages.begin(), kLanguages.end(), [&](Language language) {
    return InputSource::isInGroup(identifier, language);
  });
}

/// Remembers a layout as the last one used of its group.
void rememberPreferred(const std::optional<std::string>& identifier) {
  if (!identifier) return;
  for (const auto language : kLanguages) {
    if (InputSource::isInGroup(*identifier, language)) state().preferredID(language) = identifier;
  }
}

struct Candidate {
  std::string identifier;
  InputSource::Handle handle;
};

/// The layouts of a group in the desktop's order, the one used last put first.
std::vector<Candidate> candidates(const std::vector<InputSource::Handle>& layouts,
                                  Language language) {
  std::vector<Candidate> group;
  for (const auto& layout : layouts) {
    auto identifier = layout->identifier();
    if (!identifier || !InputSource::isInGroup(*identifier, language)) continue;
    group.push_back({std::move(*identifier), layout});
  }
  const auto& preferred = state().preferredID(language);
  std::stable_partition(group.begin(), group.end(), [&](const Candidate& candidate) {
    return preferred && candidate.identifier == *preferred;
  });
  return group;
}

bool select(const Candidate& candidate, Language language) {
  auto& all = state();
  all.requestedSelection = {candidate.identifier, uptime()};
  if (!platform::desktop().inputSources().select(*candidate.handle)) {
    all.requestedSelection.reset();
    return false;
  }
  all.preferredID(language) = candidate.identifier;
  return true;
}

/// The one character that a key gives; absent for keys that give nothing to map.
std::optional<char32_t> keyCharacter(const platform::InputSourceHandle& layout,
                                     std::uint16_t keyCode, bool shift,
                                     std::uint32_t keyboardType) {
  const auto units = layout.translate(keyCode, shift, keyboardType);
  if (units.size() != 1) return std::nullopt;
  const char32_t character = units.front();
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  if (isSurrogate || text::isControlOrSpace(character)) return std::nullopt;
  return character;
}

/// Collects one direction of a map. A character that two keys give with different partners is
/// left out rather than guessed.
class MapBuilder {
 public:
  void add(char32_t key, char32_t value) {
    const auto [entry, isNew] = map_.emplace(key, value);
    if (!isNew && entry->second != value) conflicts_.insert(key);
  }
  [[nodiscard]] LayoutMap::Map build() && {
    for (const auto key : conflicts_)
      map_.erase(key);
    return std::move(map_);
  }

 private:
  LayoutMap::Map map_;
  LayoutMap::Set conflicts_;
};

bool isOwnSwitch(const std::optional<std::string>& current) {
  const auto& requested = state().requestedSelection;
  return requested && requested->id == current && uptime() - requested->at <= kOwnSwitchInterval;
}

/// Whether the layout now current was chosen by the person; takes note of the program's own
/// selection.
bool isUserChange(const std::optional<std::string>& current) {
  auto& all = state();
  if (!all.observedSourceID || all.observedSourceID == current) return false;
  const bool own = isOwnSwitch(current);
  all.requestedSelection.reset();
  return !own;
}

void forgetMaps() {
  state().preparedPair.reset();
  state().canProcessCurrentLayout = false;
}

/// Installs the maps of the pair of layouts that go with the current one, or none.
void prepareMaps(const std::optional<std::string>& current, std::uint32_t type) {
  auto& all = state();
  if (!current || !isKnown(*current)) return forgetMaps();
  const auto english = InputSource::preferredLayout(Language::english);
  const auto russian = InputSource::preferredLayout(Language::russian);
  if (!english || !russian) return forgetMaps();
  const PreparedPair pair{*english->identifier(), *russian->identifier(), type};
  if (all.preparedPair == pair && all.canProcessCurrentLayout) return;
  auto maps = InputSource::physicalMaps(*english, *russian, type);
  if (!maps) {
    forgetMaps();
    LayoutMap::install({}, {});
    return;
  }
  all.canProcessCurrentLayout =
      LayoutMap::install(std::move(maps->enToRu), std::move(maps->ruToEn));
  all.preparedPair = pair;
}

bool isRetryDue() {
  const auto& all = state();
  return !all.canProcessCurrentLayout && all.observedSourceID && isKnown(*all.observedSourceID) &&
         all.nextPreparationRetry <= uptime();
}

/// Whether the current layout is one of the two that the maps were built from.
bool isPreparedLayout(const std::optional<std::string>& current) {
  const auto& pair = state().preparedPair;
  return pair && (pair->englishID == current || pair->russianID == current);
}

}  // namespace

bool InputSource::isInGroup(std::string_view identifier, Language language) {
  namespace ids = platform::layoutIdentifiers;
  const auto contains = [&](const auto& group) {
    return std::find(group.begin(), group.end(), identifier) != group.end();
  };
  return language == Language::russian ? contains(ids::kAllRussian) : contains(ids::kAllEnglish);
}

std::optional<Language> InputSource::languageOf(const std::optional<std::string>& identifier) {
  for (const auto language : kLanguages) {
    if (identifier && isInGroup(*identifier, language)) return language;
  }
  return std::nullopt;
}

const std::optional<std::string>& InputSource::current() {
  return platform::desktop().inputSources().current();
}

std::vector<InputSource::Handle> InputSource::enabledLayouts() {
  return platform::desktop().inputSources().enabledLayouts();
}

InputSource::Handle InputSource::preferredLayout(Language language) {
  const auto group = candidates(state().cachedLayouts, language);
  return group.empty() ? nullptr : group.front().handle;
}

bool InputSource::switchTo(Language language) {
  const auto active = current();
  rememberPreferred(active);
  if (active && isInGroup(*active, language)) return true;
  const auto& all = state();
  const auto group = candidates(all.didPrepare ? all.cachedLayouts : enabledLayouts(), language);
  return std::any_of(group.begin(), group.end(),
                     [&](const Candidate& candidate) { return select(candidate, language); });
}

std::optional<InputSource::Maps> InputSource::physicalMaps(
    const platform::InputSourceHandle& english, const platform::InputSourceHandle& russian,
    std::uint32_t keyboardType) {
  if (!english.hasLayoutData() || !russian.hasLayoutData()) return std::nullopt;
  const bool isIso =
      platform::desktop().keyboard().layoutType(keyboardType) == platform::PhysicalLayoutType::iso;
  MapBuilder enToRu;
  MapBuilder ruToEn;
  for (const bool shift : {false, true}) {
    for (std::uint16_t key = 0; key <= kLastScannedKey; ++key) {
      if (key == kIsoOnlyKey && !isIso) continue;
      const auto e = keyCharacter(english, key, shift, keyboardType);
      const auto r = keyCharacter(russian, key, shift, keyboardType);
      if (!e || !r) continue;
      enToRu.add(*e, *r);
      ruToEn.add(*r, *e);
    }
  }
  return Maps{std::move(enToRu).build(), std::move(ruToEn).build()};
}

bool InputSource::prepareLayoutMaps() {
  auto& all = state();
  const auto active = current();
  const auto type = keyboardType();
  const bool byUser = isUserChange(active);
  all.observedSourceID = active;
  all.preparedKeyboardType = type;
  all.needsPreparation = false;
  all.didPrepare = true;
  rememberPreferred(active);
  all.cachedLayouts = enabledLayouts();
  prepareMaps(active, type);
  all.nextPreparationRetry = all.canProcessCurrentLayout ? 0 : uptime() + kRetryDelay;
  return byUser;
}

bool InputSource::refreshKeyboardTypeIfNeeded() {
  const auto& all = state();
  if (all.needsPreparation || isRetryDue()) return prepareLayoutMaps();
  if (all.preparedKeyboardType != keyboardType()) return prepareLayoutMaps();
  if (!all.observedSourceID || all.observedSourceID != current()) return prepareLayoutMaps();
  return false;
}

bool InputSource::isPreparedForCurrentInputSource() {
  auto& all = state();
  if (!all.didPrepare) return true;
  const auto& active = current();
  if (all.preparedKeyboardType == keyboardType()) {
    if (all.observedSourceID == active) return all.canProcessCurrentLayout;
    if (isOwnSwitch(active) && isPreparedLayout(active)) {
      all.observedSourceID = active;
      all.requestedSelection.reset();
      return all.canProcessCurrentLayout;
    }
  }
  all.requestedSelection.reset();
  all.canProcessCurrentLayout = false;
  all.needsPreparation = true;
  return false;
}

bool InputSource::canProcessCurrentLayout() {
  return state().canProcessCurrentLayout;
}

double InputSource::nextPreparationRetry() {
  return state().nextPreparationRetry;
}

}  // namespace tessarok
