// On a Mac the application is spoken to by its menu.

#include "commands/DesktopControl.h"

namespace tessarok::commands {

std::optional<DesktopStatus> askDesktop() {
  return std::nullopt;
}

bool tellDesktop(DesktopRequest) {
  return false;
}

}  // namespace tessarok::commands
