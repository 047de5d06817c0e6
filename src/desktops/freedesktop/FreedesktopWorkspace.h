#pragma once

#include <string>
#include <vector>

#include "desktops/freedesktop/Notice.h"
#include "desktops/freedesktop/Programs.h"
#include "platform/Environment.h"
#include "platform/Workspace.h"

namespace tessarok::freedesktop {

/// Opens things in the programs that the person has chosen for them. Whatever cannot be opened is
/// told in a notification. Main thread.
class FreedesktopWorkspace final : public platform::Workspace {
 public:
  /// Everything outlives the workspace.
  FreedesktopWorkspace(Programs& programs, platform::Environment& environment, Notice& notice)
      : programs_(programs), environment_(environment), notice_(notice) {}

  void openFile(const std::filesystem::path& file) override;
  /// Opens the keyboard settings for the address of the system settings, which is the nearest
  /// thing to the permission that the program needs elsewhere: here none is needed, and what
  /// keeps it from working is a missing layout.
  void openUrl(std::string_view url) override;

 private:
  using Command = std::vector<std::string>;

  void openWithDefault(const std::string& what);
  void openSettings();
  [[nodiscard]] std::vector<Command> settingsPrograms();

  Programs& programs_;
  platform::Environment& environment_;
  Notice& notice_;
};

}  // namespace tessarok::freedesktop
