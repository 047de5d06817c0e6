#include "commands/SessionStart.h"

#include <string>

#include "commands/InstalledParts.h"
#include "desktops/freedesktop/SessionKind.h"

namespace tessarok::commands {

namespace {

/// What toolkits and the X library are told to take their text from.
bool isTypedThroughFcitx(platform::Environment& environment) {
  const auto variable = [&](const char* name) { return environment.variable(name).value_or(""); };
  return variable("XMODIFIERS").find("@im=fcitx") != std::string::npos ||
         variable("GTK_IM_MODULE").starts_with("fcitx") ||
         variable("QT_IM_MODULE").starts_with("fcitx");
}

}  // namespace

bool isServedWithoutX11(platform::Environment& environment) {
  return freedesktop::isWaylandSession(environment) ||
         (isTypedThroughFcitx(environment) && isFcitxAddonInstalled());
}

}  // namespace tessarok::commands
