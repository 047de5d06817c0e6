#include "desktops/posix/ReplacedFile.h"

#include <sys/stat.h>

namespace tessarok::posix {

ReplacedFile::ReplacedFile(std::filesystem::path file)
    : file_(std::move(file)), first_(identity()) {}

bool ReplacedFile::isReplaced() const {
  if (!first_) return false;
  const auto now = identity();
  return now && *now != *first_;
}

std::optional<ReplacedFile::Identity> ReplacedFile::identity() const {
  struct stat status {};
  if (::stat(file_.c_str(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino};
}

}  // namespace tessarok::posix
