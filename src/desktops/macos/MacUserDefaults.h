#pragma once

#include <string_view>

#include "desktops/macos/CfRef.h"
#include "platform/UserDefaults.h"

namespace tessarok::macos {

/// The preferences of an application, as `defaults write app.tessarok …` also changes them.
class MacUserDefaults final : public platform::UserDefaults {
 public:
  /// Those of this process's own application.
  MacUserDefaults() : application_(CfRef<CFStringRef>::retain(kCFPreferencesCurrentApplication)) {}
  /// Those of another one, which a command that belongs to it wants to know.
  explicit MacUserDefaults(std::string_view application);

  std::optional<bool> boolean(std::string_view key) override;
  void setBoolean(std::string_view key, bool value) override;

 private:
  CfRef<CFStringRef> application_;
};

}  // namespace tessarok::macos
