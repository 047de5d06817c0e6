#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/MappedFile.h"
#include "words/DataFault.h"
#include "words/Language.h"

namespace tessarok {

/// One word list, mapped into memory and searched in place: UTF-8, one lower-case word a line,
/// lines in the order of their bytes. May be read from any thread. It never changes, but for one
/// thing: when somebody writes to the file in place it is unavailable from then on.
class DictFile {
 public:
  /// Locates, maps and validates `resource`. An unusable file leaves the dictionary unavailable;
  /// an invalid one is reported to the system log.
  explicit DictFile(const std::string& resource);

  /// Whether there is a list that could be read and is valid.
  [[nodiscard]] bool isAvailable() const;
  /// Whether it is unavailable because somebody wrote to its file.
  [[nodiscard]] bool wasChanged() const { return isChanged_; }
  /// Looks whether the file was written to in place since it was validated. True when that is news,
  /// which is said in the system log.
  bool noticeChange() const;
  /// Whether `word` is one whole line, byte for byte. False when unavailable, and when the disk
  /// would have to be waited for: then `misses` grows.
  [[nodiscard]] bool contains(std::string_view word) const;
  /// How many look-ups have had no answer.
  [[nodiscard]] std::uint64_t misses() const { return misses_.load(std::memory_order_relaxed); }
  /// Memory may have lost parts of the file since the last call. To be called now and then.
  void askAnew() const;
  /// The whole list; empty when unavailable.
  [[nodiscard]] std::string_view data() const;

  /// The first thing that makes `data` invalid; absent when it is a valid dictionary.
  [[nodiscard]] static std::optional<DataFault> findFault(std::string_view data, Language language);
  /// Whose alphabet the file of this base name is held to.
  [[nodiscard]] static Language languageOf(std::string_view resource);

 private:
  std::string resource_;
  std::unique_ptr<platform::MappedFile> file_;
  /// Set once, by whoever notices.
  mutable std::atomic<bool> isChanged_{false};
  mutable std::atomic<std::uint64_t> misses_{0};
};

}  // namespace tessarok
