#include "commands/SessionStart.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/Processes.h"

namespace tessarok::commands {

namespace {

std::string variable(const char* name) {
  return posix::personsVariable(name).value_or("");
}

bool isWayland() {
  // Each is missing from some sessions: the first where a display manager knows of none, the
  // second where the compositor starts programs of the session before it says its name.
  return variable("XDG_SESSION_TYPE") == "wayland" || !variable("WAYLAND_DISPLAY").empty();
}

/// What toolkits and the X library are told to take their text from.
bool isTypedThroughFcitx() {
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

bool isServedWithoutX11() {
  return isWayland() || (isTypedThroughFcitx() && isAddonInstalled());
}

}  // namespace tessarok::commands
