#include "tests/support/SoakHome.h"

#include <fstream>
#include <system_error>

namespace tessarok::testing {

namespace fs = std::filesystem;

fs::path SoakHome::lists() const {
  return path() / ".local" / "share" / "Tessarok";
}

fs::path SoakHome::aside() const {
  return path() / ".local" / "share" / "aside";
}

bool SoakHome::isLearned(const std::string& word) const {
  for (const char* name : {"ignored.txt", "rejects.txt"}) {
    std::ifstream file(lists() / name);
    for (std::string line; std::getline(file, line);) {
      if (line.substr(0, line.find('\t')) == word) return true;
    }
  }
  return false;
}

std::string SoakHome::filesOfLists() const {
  std::string names;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(lists(), error))
    names.append(names.empty() ? "" : ", ").append(entry.path().filename());
  return names;
}

void SoakHome::editDictionary(const std::vector<std::string>& words) const {
  fs::create_directories(lists());
  std::ofstream file(lists() / "dictionary.txt");
  file << "\xEF\xBB\xBF# words\r\n";
  for (const auto& word : words)
    file << word << "\r\n";
}

void SoakHome::takeListsAway() const {
  // There is no folder before the first list.
  std::error_code error;
  fs::rename(lists(), aside(), error);
  fs::create_symlink("/nonexistent/nowhere", lists());
}

void SoakHome::putListsBack() const {
  fs::remove(lists());
  std::error_code error;
  fs::rename(aside(), lists(), error);
}

}  // namespace tessarok::testing
