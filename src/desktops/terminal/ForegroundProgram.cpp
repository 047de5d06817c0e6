#include "desktops/terminal/ForegroundProgram.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <string_view>

namespace tessarok::terminal {

namespace {

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::string programOf(pid_t group) {
  if (group <= 0) return {};
  std::ifstream file("/proc/" + std::to_string(group) + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

bool isShell(const std::string& program) {
  return isOneOf(program, {"sh", "bash", "dash", "zsh", "fish", "ksh", "ksh93", "mksh", "tcsh",
                           "csh", "ash", "busybox", "yash", "nu", "elvish", "xonsh", "osh"});
}

bool mayHoldShell(const std::string& program) {
  return isOneOf(program, {"ssh", "mosh-client", "docker", "podman", "kubectl", "lxc", "nsenter",
                           "chroot", "script", "su", "sudo", "doas", "machinectl", "systemd-run",
                           "tessarok", "toolbox"});
}

}  // namespace tessarok::terminal
