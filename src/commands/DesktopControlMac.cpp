// On a Mac the application is spoken to by its menu.

#include "commands/DesktopControl.h"

namespace tessarok::commands {

std::optional<DesktopStatus> askDesktop() {
  return std::nullopt;
}

std::vector<std::string> obstaclesToDesktop() {
  return {};
}

bool isDesktopHeld() {
  return false;
}

std::optional<std::string> unreachableDesktop() {
  return std::nullopt;
}

void showWhyNotStarted() {}

bool tellDesktop(DesktopRequest) {
  return false;
}

}  // namespace tessarok::commands
