#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "InputError.h"
#include "InputText.h"

namespace tessarok::makedata::test {

/// A directory of its own for one test, removed at the end.
class TemporaryDirectory final {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "make-data-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw std::system_error(errno, std::generic_category(), "mkdtemp");
    }
    path_ = name;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& file, std::string_view content) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
}

inline std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Names of everything in a directory, hidden files too, sorted.
inline std::vector<std::string> namesIn(const std::filesystem::path& directory) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// The text of the InputError that `action` throws; "no error" when it throws none.
inline std::string inputErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const InputError& error) {
    return error.what();
  }
  return "no error";
}

inline std::vector<std::string> toUtf8Words(const std::vector<std::u32string>& words) {
  std::vector<std::string> result;
  for (const std::u32string& word : words)
    result.push_back(encodeUtf8(word));
  return result;
}

}  // namespace tessarok::makedata::test
