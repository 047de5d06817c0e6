#include "desktops/freedesktop/IconTheme.h"

#include <algorithm>
#include <sstream>
#include <system_error>

#include "desktops/freedesktop/StatusSymbol.h"

namespace tessarok::freedesktop {

namespace {

namespace fs = std::filesystem;

bool holds(const fs::path& icons, const std::string& icon) {
  std::error_code error;
  return fs::exists(icons / "hicolor" / "scalable" / "status" / (icon + ".svg"), error);
}

std::vector<fs::path> standardFolders(platform::Environment& environment) {
  std::vector<fs::path> folders;
  const auto dataHome = environment.variable("XDG_DATA_HOME").value_or("");
  const auto home = environment.variable("HOME").value_or("");
  if (!dataHome.empty()) {
    folders.push_back(fs::path(dataHome) / "icons");
  } else if (!home.empty()) {
    folders.push_back(fs::path(home) / ".local" / "share" / "icons");
  }
  auto dataFolders = environment.variable("XDG_DATA_DIRS").value_or("");
  if (dataFolders.empty()) dataFolders = "/usr/local/share:/usr/share";
  std::istringstream list(dataFolders);
  for (std::string folder; std::getline(list, folder, ':');) {
    if (!folder.empty()) folders.push_back(fs::path(folder) / "icons");
  }
  return folders;
}

std::optional<fs::path> folderBesideExecutable() {
  std::error_code error;
  const auto executable = fs::read_symlink("/proc/self/exe", error);
  if (error || executable.parent_path().filename() != "bin") return std::nullopt;
  return executable.parent_path().parent_path() / "share" / "icons";
}

}  // namespace

IconTheme::IconTheme(platform::Environment& environment)
    : IconTheme(standardFolders(environment), folderBesideExecutable()) {}

IconTheme::IconTheme(const std::vector<fs::path>& standard, const std::optional<fs::path>& own) {
  for (const auto& symbol : StatusSymbol::all()) {
    for (const bool isDimmed : {false, true}) {
      const auto icon = symbol.iconName(isDimmed);
      const bool isStandard = std::any_of(standard.begin(), standard.end(),
                                          [&](const auto& folder) { return holds(folder, icon); });
      if (isStandard) {
        folders_[icon] = "";
      } else if (own && holds(*own, icon)) {
        folders_[icon] = own->string();
      }
    }
  }
}

std::optional<std::string> IconTheme::folderFor(const std::string& icon) const {
  const auto found = folders_.find(icon);
  return found == folders_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace tessarok::freedesktop
