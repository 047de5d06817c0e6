#include "desktops/posix/DataDirectoryBundle.h"

#include <system_error>
#include <utility>

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

std::optional<fs::path> directoryBesideExecutable() {
  std::error_code error;
  const auto executable = fs::read_symlink("/proc/self/exe", error);
  if (error || executable.parent_path().filename() != "bin") return std::nullopt;
  auto directory = executable.parent_path().parent_path() / "share" / "tessarok";
  if (!fs::is_directory(directory, error)) return std::nullopt;
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
