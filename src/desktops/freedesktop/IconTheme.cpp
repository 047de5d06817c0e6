#include "desktops/freedesktop/IconTheme.h"

#include <sstream>
#include <system_error>

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

std::optional<std::string> IconTheme::folderFor(const std::string& icon) const {
  for (const auto& folder : standard_) {
    if (holds(folder, icon)) return "";
  }
  if (own_ && holds(*own_, icon)) return own_->string();
  return std::nullopt;
}

}  // namespace tessarok::freedesktop
