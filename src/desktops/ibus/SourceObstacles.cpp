#include "desktops/ibus/SourceObstacles.h"

#include <algorithm>

#include "desktops/ibus/Engine.h"
#include "desktops/posix/Translation.h"
#include "desktops/posix/TranslationValues.h"
#include "desktops/xkb/LayoutNames.h"
#include "typing/InputSource.h"

namespace tessarok::ibus {

namespace {

using Sources = std::vector<SourceList::Source>;

/// Whether it is a layout between which and the other language's words are moved.
bool isOfOurLanguages(const SourceList::Source& source) {
  const auto& [kind, name] = source;
  if (kind != "xkb") return false;
  // "us+intl" is a layout and its variant.
  const auto plus = name.find('+');
  const auto variant = plus == std::string::npos ? std::string() : name.substr(plus + 1);
  const auto identifier = xkb::layoutNames::identifierOf({name.substr(0, plus), variant});
  return InputSource::isInGroup(identifier, Language::english) ||
         InputSource::isInGroup(identifier, Language::russian);
}

bool has(const Sources& sources, const std::string& engine) {
  return std::ranges::find(sources, SourceList::Source("ibus", engine)) != sources.end();
}

}  // namespace

std::vector<std::string> obstaclesIn(const Sources& sources) {
  std::vector<std::string> all;
  const bool hasEnglish = has(sources, engine::kEnglish);
  const bool hasRussian = has(sources, engine::kRussian);
  if (!hasEnglish || !hasRussian) {
    all.emplace_back(
        hasEnglish ? posix::translatable("Russian (Tessarok) is missing in GNOME's input sources: "
                                         "add it in Settings, Keyboard, Input Sources")
        : hasRussian
            ? posix::translatable("English (Tessarok) is missing in GNOME's input sources: add it "
                                  "in Settings, Keyboard, Input Sources")
            : posix::translatable(
                  "English (Tessarok) and Russian (Tessarok) are missing in GNOME's "
                  "input sources: add them in Settings, Keyboard, Input Sources"));
  }
  std::string others;
  for (const auto& source : sources) {
    if (isOfOurLanguages(source)) others += (others.empty() ? "" : ", ") + source.second;
  }
  if (!others.empty()) {
    all.push_back(posix::withValues(
        posix::translatable(
            "nothing is put right while a layout of GNOME's own is on, here \"{1}\": "
            "remove it in Settings, Keyboard, Input Sources"),
        {others}));
  }
  return all;
}

}  // namespace tessarok::ibus
