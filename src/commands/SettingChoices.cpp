#include "commands/SettingChoices.h"

#include <algorithm>

namespace tessarok::commands {

const std::vector<SettingChoice>& settingChoices() {
  static const std::vector<SettingChoice> all{
      {"manualKey", {"both", "alt-space", "pause"}},
      {"pauseKey", {"grave", "english-only", "section", "none"}},
      {"layoutKey", {"control-space", "none"}},
      {"layoutCursor", {"on", "off"}},
      {"layoutTitle", {"on", "off"}},
  };
  return all;
}

bool isKnown(const SettingChoice& choice, std::string_view value) {
  return std::find(choice.values.begin(), choice.values.end(), value) != choice.values.end();
}

}  // namespace tessarok::commands
