#include "commands/SessionStart.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

#include "desktops/freedesktop/SessionKind.h"
#include "desktops/posix/Processes.h"

namespace tessarok::commands {

namespace {

/// What toolkits and the X library are told to take their text from.
bool isTypedThroughFcitx(platform::Environment& environment) {
  const auto variable = [&](const char* name) { return environment.variable(name).value_or(""); };
  return variable("XMODIFIERS").find("@im=fcitx") != std::string::npos ||
         variable("GTK_IM_MODULE").starts_with("fcitx") ||
         variable("QT_IM_MODULE").starts_with("fcitx");
}

/// Beside this program, below the same prefix.
bool isAddonInstalled() {
  const auto program = posix::programFileOf(::getpid());
  if (!program) return false;
  std::error_code error;
  const auto prefix = program->parent_path().parent_path();
  return std::filesystem::exists(prefix / "share" / "fcitx5" / "addon" / "tessarok.conf", error);
}

}  // namespace

bool isServedWithoutX11(platform::Environment& environment) {
  return freedesktop::isWaylandSession(environment) ||
         (isTypedThroughFcitx(environment) && isAddonInstalled());
}

}  // namespace tessarok::commands
