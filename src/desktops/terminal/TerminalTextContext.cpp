#include "desktops/terminal/TerminalTextContext.h"

#include <algorithm>
#include <string>
#include <unistd.h>

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::terminal {

bool TerminalTextContext::isProgram(std::string_view name) {
  if (name.empty() || name.find('/') != std::string_view::npos) return false;
  const auto path = posix::personsVariable("PATH").value_or("/usr/local/bin:/usr/bin:/bin");
  std::string_view rest = path;
  while (!rest.empty()) {
    const auto folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
    // A relative folder is relative to the shell, whose place is not known.
    if (!folder.starts_with('/')) continue;
    const auto file = std::string(folder) + "/" + std::string(name);
    if (::access(file.c_str(), X_OK) == 0) return true;
  }
  return false;
}

}  // namespace tessarok::terminal
