#include "commands/PersonsSwitches.h"

#include "desktops/posix/SettingsFile.h"

namespace tessarok::commands {

std::unique_ptr<platform::UserDefaults> personsSwitches(platform::Files& files,
                                                        platform::SystemLog& log) {
  return std::make_unique<posix::SettingsFile>(
      posix::SettingsFile::locationFor(files.homeDirectory()), files, log);
}

}  // namespace tessarok::commands
