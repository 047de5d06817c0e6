#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::testing {

/// The home of a person who types for a long time, and what becomes of the lists in it.
class SoakHome final {
 public:
  [[nodiscard]] const std::filesystem::path& path() const { return home_.path(); }
  /// Whether one of the files counts rejections of a word.
  [[nodiscard]] bool isLearned(const std::string& word) const;
  /// The person edits their dictionary, as a Windows editor saves it.
  void editDictionary(const std::vector<std::string>& words) const;
  /// For a message: what is in the folder of the lists.
  [[nodiscard]] std::string filesOfLists() const;
  /// Nothing can be written until the folder of the lists is put back.
  void takeListsAway() const;
  void putListsBack() const;

 private:
  [[nodiscard]] std::filesystem::path lists() const;
  [[nodiscard]] std::filesystem::path aside() const;

  virtualdesktop::TemporaryDirectory home_;
};

}  // namespace tessarok::testing
