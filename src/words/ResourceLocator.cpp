#include "words/ResourceLocator.h"

#include <string>
#include <vector>

#include "platform/Desktop.h"

namespace tessarok {

namespace {

/// In this order: the first that holds the file wins.
std::vector<std::filesystem::path> developmentDirectories() {
  std::vector<std::filesystem::path> directories;
  if (const auto named = platform::desktop().environment().variable("TESSAROK_RES")) {
    directories.emplace_back(*named);
  }
  // A relative path is one in the working directory, whatever that is by now.
  directories.emplace_back("Resources");
#ifdef TESSAROK_SOURCE_ROOT
  // Not in a package: the folder that it was built in may be anybody's on another machine.
  directories.emplace_back(std::filesystem::path(TESSAROK_SOURCE_ROOT) / "Resources");
#endif
  return directories;
}

}  // namespace

std::optional<std::filesystem::path> ResourceLocator::find(std::string_view name) {
  auto& bundle = platform::desktop().bundle();
  if (auto found = bundle.resource(name, "txt")) return found;
  if (bundle.isApplication()) return std::nullopt;
  const auto fileName = std::string(name) + ".txt";
  for (const auto& directory : developmentDirectories()) {
    auto file = directory / fileName;
    if (platform::desktop().files().isReadable(file)) return file;
  }
  return std::nullopt;
}

}  // namespace tessarok
