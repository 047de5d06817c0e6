#include "desktops/freedesktop/Obstacles.h"

#include "desktops/posix/Translation.h"
#include "desktops/posix/TranslationValues.h"
#include "typing/InputSource.h"
#include "words/Dict.h"

namespace tessarok::freedesktop {

std::string missingLayouts() {
  bool hasEnglish = false;
  bool hasRussian = false;
  std::string names;
  for (const auto& layout : InputSource::enabledLayouts()) {
    const auto identifier = layout->identifier().value_or("");
    hasEnglish = hasEnglish || InputSource::isInGroup(identifier, Language::english);
    hasRussian = hasRussian || InputSource::isInGroup(identifier, Language::russian);
    names += (names.empty() ? "" : ", ") + layout->name();
  }
  if (hasEnglish && hasRussian) return {};
  const auto* missing =
      hasEnglish ? posix::translatable(
                       "both an English and a Russian keyboard layout are needed, and there is no "
                       "Russian one among {1}")
      : hasRussian
          ? posix::translatable(
                "both an English and a Russian keyboard layout are needed, and there is no English "
                "one among {1}")
          : posix::translatable(
                "both an English and a Russian keyboard layout are needed, and there is neither "
                "one "
                "among {1}");
  return posix::withValues(missing, {names});
}

std::string missingWordData() {
  if (Dict::en().isAvailable() && Dict::ru().isAvailable()) return {};
  if (Dict::en().wasChanged() || Dict::ru().wasChanged()) {
    return posix::translatable(
        "the word data was changed while it was in use; until the next start automatic correction "
        "is off, Alt+Space works");
  }
  return posix::translatable(
      "the word data is missing; automatic correction is off, Alt+Space works");
}

std::vector<std::string> obstaclesToCorrection() {
  std::vector<std::string> all;
  for (auto& obstacle : {missingWordData(), missingLayouts()}) {
    if (!obstacle.empty()) all.push_back(obstacle);
  }
  return all;
}

}  // namespace tessarok::freedesktop
