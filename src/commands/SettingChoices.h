#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessarok::commands {

/// A setting that is a text, and what it may be.
struct SettingChoice {
  const char* key;
  std::vector<std::string> values;
};

/// All of them.
[[nodiscard]] const std::vector<SettingChoice>& settingChoices();
/// Whether a value is one of those that the setting may have.
[[nodiscard]] bool isKnown(const SettingChoice& choice, std::string_view value);

}  // namespace tessarok::commands
