#include "commands/InstalledParts.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/Processes.h"

namespace tessarok::commands {

namespace {

namespace fs = std::filesystem;

/// The folders that a variable such as PATH names.
std::vector<fs::path> foldersOf(const char* variable, const char* usual) {
  const auto named = posix::personsVariable(variable).value_or("");
  const std::string all = named.empty() ? usual : named;
  std::vector<fs::path> folders;
  for (std::size_t start = 0; start <= all.size();) {
    const auto end = std::min(all.find(':', start), all.size());
    folders.emplace_back(all.substr(start, end - start));
    start = end + 1;
  }
  return folders;
}

bool isInstalled(const fs::path& file) {
  auto folders = foldersOf("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
  if (const auto program = posix::programFileOf(::getpid())) {
    folders.push_back(program->parent_path().parent_path() / "share");
  }
  return std::any_of(folders.begin(), folders.end(), [&](const auto& folder) {
    std::error_code error;
    return fs::exists(folder / file, error);
  });
}

}  // namespace

bool isFcitxAddonInstalled() {
  return isInstalled("fcitx5/addon/tessarok.conf");
}

bool areIbusEnginesInstalled() {
  return isInstalled("ibus/component/tessarok.xml");
}

bool isShellExtensionInstalled() {
  const fs::path extensions = "gnome-shell/extensions";
  return isInstalled(extensions / "tessarok@app.tessarok") ||
         isInstalled(extensions / "tessarok-43@app.tessarok");
}

bool isProgramThere(const char* name) {
  const auto folders = foldersOf("PATH", "/usr/local/bin:/usr/bin:/bin");
  return std::any_of(folders.begin(), folders.end(), [&](const auto& folder) {
    return ::access((folder / name).c_str(), X_OK) == 0;
  });
}

}  // namespace tessarok::commands
