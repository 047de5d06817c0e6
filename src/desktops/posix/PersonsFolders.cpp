#include "desktops/posix/PersonsFolders.h"

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/PosixFiles.h"

namespace tessarok::posix {

std::filesystem::path dataHome(const std::filesystem::path& home) {
  // A relative path there is to be ignored, as the base directory rules say.
  const auto named = personsVariable("XDG_DATA_HOME");
  const bool isUsable = named && named->starts_with('/');
  return isUsable ? std::filesystem::path(*named) : PosixFiles::defaultDataHome(home);
}

}  // namespace tessarok::posix
