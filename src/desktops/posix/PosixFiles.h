#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/Files.h"

namespace tessarok::posix {

/// Files on a POSIX system. Any thread.
class PosixFiles : public platform::Files {
 public:
  /// `applicationSupport` is where programs keep a person's data; absent when unknown.
  PosixFiles(std::filesystem::path home, std::optional<std::filesystem::path> applicationSupport);

  /// The files of the person who runs the program: $HOME (or the user database), and `dataHome`
  /// for programs' own data.
  [[nodiscard]] static std::unique_ptr<PosixFiles> ofUser();
  /// Where programs keep data under a home directory on Linux when nothing else is said.
  [[nodiscard]] static std::filesystem::path defaultDataHome(const std::filesystem::path& home);

  std::filesystem::path homeDirectory() override { return home_; }
  std::optional<std::filesystem::path> applicationSupportDirectory() override {
    return applicationSupport_;
  }
  bool exists(const std::filesystem::path& file) override;
  bool isReadable(const std::filesystem::path& file) override;
  std::optional<platform::FileStamp> stamp(const std::filesystem::path& file) override;
  std::optional<std::string> read(const std::filesystem::path& file, std::string* error) override;
  std::vector<std::string> list(const std::filesystem::path& folder) override;
  std::unique_ptr<platform::MappedFile> map(const std::filesystem::path& file) override;
  platform::Failure createDirectories(const std::filesystem::path& folder) override;
  platform::Failure writeAtomically(const std::filesystem::path& file,
                                    std::string_view text) override;
  bool remove(const std::filesystem::path& file) override;
  void appendToLog(const std::filesystem::path& file, std::string_view text,
                   std::uint64_t restartAbove) override;
  platform::FileLockResult lockExclusively(const std::filesystem::path& file) override;
  bool isLockedByAnother(const std::filesystem::path& file) override;

  /// Removes what writes of this program that were cut off, by a crash or a power failure, have
  /// left in a folder, and nothing else. Failures are ignored. The first write into a folder does
  /// it.
  static void removeLeftovers(const std::filesystem::path& folder);

 private:
  void tidyUpOnce(const std::filesystem::path& folder);

  std::filesystem::path home_;
  std::optional<std::filesystem::path> applicationSupport_;
  std::mutex mutex_;
  std::set<std::filesystem::path> tidiedUp_;
};

}  // namespace tessarok::posix
