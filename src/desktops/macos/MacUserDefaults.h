#pragma once

#include "platform/UserDefaults.h"

namespace tessarok::macos {

/// The program's own preferences, as `defaults write app.tessarok …` also changes them.
class MacUserDefaults final : public platform::UserDefaults {
 public:
  std::optional<bool> boolean(std::string_view key) override;
  void setBoolean(std::string_view key, bool value) override;
};

}  // namespace tessarok::macos
