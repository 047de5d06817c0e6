#include "desktops/posix/PersonsFolders.h"

namespace tessarok::posix {

std::filesystem::path dataHome(const std::filesystem::path& home) {
  // The application's folder, whatever the shell's variables say: it does not see them.
  return home / "Library" / "Application Support";
}

}  // namespace tessarok::posix
