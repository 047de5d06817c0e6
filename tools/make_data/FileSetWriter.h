#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace tessarok::makedata {

/// Replaces a set of files in one directory so that a failure leaves the old set: everything is
/// written and synced under temporary names first, then renamed into place; a failed rename brings
/// the files back that were replaced before it.
class FileSetWriter final {
 public:
  /// The directory is created when it does not exist.
  explicit FileSetWriter(std::filesystem::path directory) : directory_(std::move(directory)) {}
  ~FileSetWriter();
  FileSetWriter(const FileSetWriter&) = delete;
  FileSetWriter& operator=(const FileSetWriter&) = delete;

  /// Writes one file under a temporary name. Throws std::system_error, whose text names the file.
  void stage(const std::string& name, const std::string& content);

  /// Puts the staged files into place, in the order of staging. Throws std::system_error after
  /// having restored the old files.
  void commit();

 private:
  struct Staged {
    std::filesystem::path temporary;
    std::filesystem::path target;
    std::filesystem::path backup;  ///< a second name of the old file; empty when there was none
    bool replaced = false;
  };

  void keepOldFile(Staged& file) const;
  void restoreOldFiles() noexcept;

  std::filesystem::path directory_;
  std::vector<Staged> staged_;
};

}  // namespace tessarok::makedata
