#include "desktops/terminal/ForegroundProgram.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "desktops/posix/Processes.h"

namespace tessarok::terminal {

namespace {

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::string programOf(pid_t group) {
  return group > 0 ? posix::programNameOf(group) : std::string();
}

bool isShell(const std::string& program) {
  return isOneOf(program, {"sh", "bash", "dash", "zsh", "fish", "ksh", "ksh93", "mksh", "tcsh",
                           "csh", "ash", "busybox", "yash", "nu", "elvish", "xonsh", "osh"});
}

bool mayHoldShell(const std::string& program) {
  return isOneOf(program, {"ssh", "mosh-client", "docker", "podman", "kubectl", "lxc", "nsenter",
                           "chroot", "script", "su", "sudo", "doas", "machinectl", "systemd-run",
                           "tessarok", "tessarok-cli", "toolbox"});
}

}  // namespace tessarok::terminal
