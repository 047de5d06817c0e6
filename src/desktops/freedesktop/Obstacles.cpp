#include "desktops/freedesktop/Obstacles.h"

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
    names += (names.empty() ? "" : ", ") + identifier;
  }
  if (hasEnglish && hasRussian) return {};
  const auto* missing = hasEnglish ? "no Russian" : hasRussian ? "no English" : "neither";
  return std::string("both an English and a Russian keyboard layout are needed, and there is ") +
         missing + " one among " + names;
}

std::string missingWordData() {
  if (Dict::en().isAvailable() && Dict::ru().isAvailable()) return {};
  return "the word data is missing; automatic correction is off, ⌥Space works";
}

std::vector<std::string> obstaclesToCorrection() {
  std::vector<std::string> all;
  for (auto& obstacle : {missingWordData(), missingLayouts()}) {
    if (!obstacle.empty()) all.push_back(obstacle);
  }
  return all;
}

}  // namespace tessarok::freedesktop
