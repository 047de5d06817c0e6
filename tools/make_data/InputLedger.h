#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tessarok::makedata {

/// What went into the data, for the manifest.
struct InputRecord {
  std::string package;
  std::string path;
  std::string sha256;
  std::size_t size = 0;
};

/// Reads input files and keeps a record of each.
class InputLedger final {
 public:
  /// The file's bytes. `package` says where the file comes from, `shownAs` is the path in the
  /// manifest. Throws InputError when the file cannot be read.
  [[nodiscard]] std::string read(const std::filesystem::path& file, const std::string& package,
                                 const std::string& shownAs);

  /// In the order of reading.
  [[nodiscard]] const std::vector<InputRecord>& records() const { return records_; }

 private:
  std::vector<InputRecord> records_;
};

}  // namespace tessarok::makedata
