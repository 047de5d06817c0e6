#include "desktops/terminal/TerminalDesktop.h"

#include <utility>

namespace tessarok::terminal {

TerminalDesktop::TerminalDesktop(std::optional<std::filesystem::path> resources)
    : bundle_(std::move(resources)),
      userDefaults_(posix::SettingsFile::locationFor(files_->homeDirectory()), *files_,
                    systemLog_) {
  inputSources_.onSelected = [this] {
    runLoop_.async([this] {
      inputSourceNotifications_.announce(platform::Notification::selectedInputSourceChanged);
    });
  };
}

void TerminalDesktop::announceOtherProgram() {
  runLoop_.async(
      [this] { workspaceNotifications_.announce(platform::Notification::applicationActivated); });
}

}  // namespace tessarok::terminal
