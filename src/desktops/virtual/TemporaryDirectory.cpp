#include "desktops/virtual/TemporaryDirectory.h"

#include <cerrno>
#include <stdlib.h>
#include <string>
#include <system_error>
// On a Mac mkdtemp is declared there.
#include <unistd.h>

namespace tessarok::virtualdesktop {

TemporaryDirectory::TemporaryDirectory() {
  auto name = (std::filesystem::temp_directory_path() / "tessarok.XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::filesystem::filesystem_error("cannot make a temporary directory", name,
                                            std::error_code(errno, std::generic_category()));
  }
  path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tessarok::virtualdesktop
