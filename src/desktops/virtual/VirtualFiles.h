#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "desktops/posix/PosixFiles.h"

namespace tessarok::virtualdesktop {

/// Real files under a home directory of the run's own; the diagnostic log is kept in memory, and
/// a write can be made to fail. Any thread.
class VirtualFiles final : public posix::PosixFiles {
 public:
  explicit VirtualFiles(const std::filesystem::path& home);

  platform::Failure writeAtomically(const std::filesystem::path& file,
                                    std::string_view text) override;
  void appendToLog(const std::filesystem::path& file, std::string_view text,
                   std::uint64_t restartAbove) override;

  /// The next write of a file fails.
  void failNextWrite();
  /// The diagnostic log's lines since the last call.
  [[nodiscard]] std::vector<std::string> takeLog();
  /// Writes a file as an editor does that saves by renaming: its stamp always changes.
  platform::Failure saveAsEditor(const std::filesystem::path& file, std::string_view text);

 private:
  std::mutex mutex_;
  bool failsNextWrite_ = false;
  std::vector<std::string> log_;
  std::int64_t saves_ = 0;
};

}  // namespace tessarok::virtualdesktop
