#include "desktops/virtual/VirtualFiles.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace tessarok::virtualdesktop {

VirtualFiles::VirtualFiles(const std::filesystem::path& home)
    : PosixFiles(home, defaultDataHome(home)) {}

platform::Failure VirtualFiles::writeAtomically(const std::filesystem::path& file,
                                                std::string_view text) {
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(failsNextWrite_, false))
      return platform::Failure("the write was made to fail");
  }
  return PosixFiles::writeAtomically(file, text);
}

void VirtualFiles::appendToLog(const std::filesystem::path&, std::string_view text, std::uint64_t) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  const std::lock_guard lock(mutex_);
  log_.emplace_back(text);
}

void VirtualFiles::failNextWrite() {
  const std::lock_guard lock(mutex_);
  failsNextWrite_ = true;
}

std::vector<std::string> VirtualFiles::takeLog() {
  const std::lock_guard lock(mutex_);
  return std::exchange(log_, {});
}

platform::Failure VirtualFiles::saveAsEditor(const std::filesystem::path& file,
                                             std::string_view text) {
  if (auto failure = PosixFiles::writeAtomically(file, text)) return failure;
  // A freed inode may be used again and a fast run fits into one tick of the file system's
  // clock, so two saves could look alike: their times are set apart by hand.
  ++saves_;
  std::error_code error;
  const auto time = std::filesystem::last_write_time(file, error);
  if (!error) std::filesystem::last_write_time(file, time + std::chrono::seconds(saves_), error);
  return error ? platform::Failure(error.message()) : platform::Failure::none();
}

}  // namespace tessarok::virtualdesktop
