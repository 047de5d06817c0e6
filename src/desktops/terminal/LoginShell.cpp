#include "desktops/terminal/LoginShell.h"

#include <pwd.h>
#include <unistd.h>

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::terminal {

std::string loginShell() {
  if (const auto shell = posix::personsVariable("SHELL"); shell && !shell->empty()) return *shell;
  const auto* entry = ::getpwuid(::getuid());
  const bool hasShell = entry != nullptr && entry->pw_shell != nullptr && *entry->pw_shell != '\0';
  // What an empty field of the user database means.
  return hasShell ? entry->pw_shell : "/bin/sh";
}

}  // namespace tessarok::terminal
