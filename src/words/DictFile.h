#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/MappedFile.h"
#include "words/DataFault.h"
#include "words/Language.h"

namespace tessarok {

/// One word list, mapped into memory and searched in place: UTF-8, one lower-case word a line,
/// lines in the order of their bytes. Immutable; may be read from any thread.
class DictFile {
 public:
  /// Locates, maps and validates `resource`. An unusable file leaves the dictionary unavailable;
  /// an invalid one is reported to the system log.
  explicit DictFile(const std::string& resource);

  /// Whether there is a list that could be read and is valid.
  [[nodiscard]] bool isAvailable() const;
  /// Whether `word` is one whole line, byte for byte. False when unavailable.
  [[nodiscard]] bool contains(std::string_view word) const;
  /// The whole list; empty when unavailable.
  [[nodiscard]] std::string_view data() const;

  /// The first thing that makes `data` invalid; absent when it is a valid dictionary.
  [[nodiscard]] static std::optional<DataFault> findFault(std::string_view data, Language language);
  /// Whose alphabet the file of this base name is held to.
  [[nodiscard]] static Language languageOf(std::string_view resource);

 private:
  std::unique_ptr<platform::MappedFile> file_;
};

}  // namespace tessarok
