#include "platform/terminal/LoginShell.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace tessarok::terminal {

std::string loginShell() {
  if (const char* shell = std::getenv("SHELL"); shell != nullptr && *shell != '\0') return shell;
  const auto* entry = ::getpwuid(::getuid());
  const bool hasShell = entry != nullptr && entry->pw_shell != nullptr && *entry->pw_shell != '\0';
  // What an empty field of the user database means.
  return hasShell ? entry->pw_shell : "/bin/sh";
}

}  // namespace tessarok::terminal
