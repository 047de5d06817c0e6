#include "commands/InstalledParts.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/PosixFiles.h"
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

bool isThere(const fs::path& file) {
  std::error_code error;
  return fs::exists(file, error);
}

bool isInstalled(const fs::path& file) {
  auto folders = foldersOf("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
  if (const auto program = posix::programFileOf(::getpid())) {
    folders.push_back(program->parent_path().parent_path() / "share");
  }
  return std::any_of(folders.begin(), folders.end(),
                     [&](const auto& folder) { return isThere(folder / file); });
}

bool isExtensionInstalled(const fs::path& name) {
  const auto file = "gnome-shell/extensions" / name;
  const auto own = posix::PosixFiles::ofUser()->applicationSupportDirectory();
  return isInstalled(file) || (own && isThere(*own / file));
}

}  // namespace

bool isFcitxAddonInstalled() {
  return isInstalled("fcitx5/addon/tessarok.conf");
}

bool areIbusEnginesInstalled() {
  return isInstalled("ibus/component/tessarok.xml");
}

bool isShellExtensionInstalled() {
  return isExtensionInstalled("tessarok@app.tessarok") ||
         isExtensionInstalled("tessarok-43@app.tessarok");
}

bool isProgramThere(const char* name) {
  const auto folders = foldersOf("PATH", "/usr/local/bin:/usr/bin:/bin");
  return std::any_of(folders.begin(), folders.end(), [&](const auto& folder) {
    const auto file = folder / name;
    std::error_code error;
    return fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
  });
}

}  // namespace tessarok::commands
