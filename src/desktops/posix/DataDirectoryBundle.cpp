#include "desktops/posix/DataDirectoryBundle.h"

#include <system_error>
#include <unistd.h>
#include <utility>

#include "desktops/posix/Processes.h"

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

std::optional<fs::path> directoryBesideExecutable() {
  const auto executable = programFileOf(::getpid());
  if (!executable) return std::nullopt;
  const auto folder = executable->parent_path();
  fs::path directory;
  const bool isInstalled = folder.filename() == "bin" || folder.filename() == "libexec";
  if (isInstalled) directory = folder.parent_path() / "share" / "tessarok";
  if (folder.filename() == "MacOS") directory = folder.parent_path() / "Resources";
  std::error_code error;
  if (directory.empty() || !fs::is_directory(directory, error)) return std::nullopt;
  return directory;
}

}  // namespace

DataDirectoryBundle::DataDirectoryBundle(std::optional<fs::path> named)
    : directory_(named ? std::move(named) : directoryBesideExecutable()) {}

std::optional<fs::path> DataDirectoryBundle::resource(std::string_view name,
                                                      std::string_view extension) {
  if (!directory_) return std::nullopt;
  auto file = *directory_ / (std::string(name) + "." + std::string(extension));
  std::error_code error;
  if (!fs::exists(file, error)) return std::nullopt;
  return file;
}

}  // namespace tessarok::posix
