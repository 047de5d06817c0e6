#include "desktops/terminal/TerminalTextContext.h"

#include <algorithm>
#include <string>
#include <vector>

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::terminal {

namespace {

std::vector<std::string> foldersOfPrograms() {
  const auto path = posix::personsVariable("PATH").value_or("/usr/local/bin:/usr/bin:/bin");
  std::vector<std::string> folders;
  std::string_view rest = path;
  while (!rest.empty()) {
    const auto folder = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
    // A relative folder is relative to the shell, whose place is not known.
    const bool isNew = std::find(folders.begin(), folders.end(), folder) == folders.end();
    if (folder.starts_with('/') && isNew) folders.emplace_back(folder);
  }
  return folders;
}

}  // namespace

void TerminalTextContext::expectCommand(double now) {
  if (!programs_) programs_.emplace(foldersOfPrograms());
  programs_->refresh(now);
}

bool TerminalTextContext::isProgram(std::string_view name) {
  return programs_ && programs_->contains(name);
}

}  // namespace tessarok::terminal
