#include "commands/PersonsSwitches.h"
#include "desktops/macos/MacUserDefaults.h"

namespace tessarok::commands {

std::unique_ptr<platform::UserDefaults> personsSwitches(platform::Files&, platform::SystemLog&) {
  // By its name: a command that is called through a link may not be taken for a part of it.
  return std::make_unique<macos::MacUserDefaults>("app.tessarok");
}

}  // namespace tessarok::commands
