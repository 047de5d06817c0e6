#include "desktops/posix/TemporaryFile.h"

#include <array>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "desktops/posix/DiskFlush.h"
#include "desktops/posix/WriteAll.h"

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

/// What mkostemp is to replace in the name of a temporary file.
constexpr std::string_view kRandomPart = ".XXXXXX";
/// No write takes so long, not even on a disk that has to wake up.
constexpr auto kLongestWrite = std::chrono::minutes(5);
constexpr std::string_view kTemporaryStart = ".tessarok-";
constexpr std::size_t kNumberDigits = 16;

/// 16 digits that follow from a text (FNV-1a).
std::string checkDigits(std::string_view text) {
  std::uint64_t sum = 0xcbf29ce484222325;
  for (const char c : text)
    sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  std::array<char, kNumberDigits + 1> digits{};
  std::snprintf(digits.data(), digits.size(), "%016" PRIx64, sum);
  return digits.data();
}

/// The name of a file that is to be put in the place of another: so far it is the program's, and
/// what is left of a write that was cut off must never be taken for a file of the person's, nor
/// one of those for it. So the name holds a number and what follows from the number, which nobody
/// writes by chance. It does not grow with the target's, which may be as long as names can be.
std::string temporaryName() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  const auto number = checkDigits(std::to_string(::getpid()) + ' ' + std::to_string(now));
  return std::string(kTemporaryStart) + number + '-' + checkDigits(number) +
         std::string(kRandomPart);
}

/// Whether `temporaryName`, and mkostemp, have made the name.
bool isTemporaryName(std::string_view name) {
  if (!name.starts_with(kTemporaryStart)) return false;
  name.remove_prefix(kTemporaryStart.size());
  if (name.size() != 2 * kNumberDigits + 1 + kRandomPart.size()) return false;
  const auto number = name.substr(0, kNumberDigits);
  return name.substr(kNumberDigits).starts_with('-' + checkDigits(number) + '.');
}

}  // namespace

TemporaryFile::TemporaryFile(const fs::path& target)
    : name_((target.parent_path() / temporaryName()).string()),
      descriptor_(::mkostemp(name_.data(), O_CLOEXEC)),
      exists_(descriptor_.isOpen()) {}

TemporaryFile::~TemporaryFile() {
  if (exists_) ::unlink(name_.c_str());
}

bool TemporaryFile::replace(const fs::path& target, std::string_view text) {
  if (!descriptor_.isOpen()) return false;
  keepMode(target);
  if (!writeAll(descriptor_.get(), text) || !flushToDisk(descriptor_.get())) return false;
  if (!descriptor_.close()) return false;
  if (::rename(name_.c_str(), target.c_str()) != 0) return false;
  exists_ = false;
  return true;
}

void TemporaryFile::keepMode(const fs::path& target) {
  struct stat status {};
  if (::stat(target.c_str(), &status) == 0) {
    // Should it fail, the new file stays readable for its owner alone.
    static_cast<void>(::fchmod(descriptor_.get(), status.st_mode & 07777));
  }
}

bool TemporaryFile::isLeftover(const fs::path& file) {
  if (!isTemporaryName(file.filename().string())) return false;
  struct stat status {};
  if (::lstat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if (status.st_uid != ::geteuid() || status.st_nlink != 1) return false;
  const auto written = std::chrono::system_clock::from_time_t(status.st_mtime);
  return written + kLongestWrite < std::chrono::system_clock::now();
}

}  // namespace tessarok::posix
