#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Files.h"

namespace tessarok::plain {

/// Files that are on no disk: of a desktop that has none, or to parse thousands in a second. What
/// is mapped shares the text of the file. Any thread.
class MemoryFiles final : public platform::Files {
 public:
  void put(const std::filesystem::path& file, std::string text) {
    const std::lock_guard lock(mutex_);
    files_[file.string()] = {std::make_shared<const std::string>(std::move(text)), ++writes_};
  }
  void clear() {
    const std::lock_guard lock(mutex_);
    files_.clear();
  }
  /// Absent when there is none.
  [[nodiscard]] std::optional<std::string> text(const std::filesystem::path& file) {
    const std::lock_guard lock(mutex_);
    const auto found = files_.find(file.string());
    return found == files_.end() ? std::nullopt : std::optional(*found->second.text);
  }

  std::filesystem::path homeDirectory() override { return "/home"; }
  std::optional<std::filesystem::path> applicationSupportDirectory() override { return "/support"; }
  bool exists(const std::filesystem::path& file) override {
    const std::lock_guard lock(mutex_);
    return files_.contains(file.string());
  }
  bool isReadable(const std::filesystem::path& file) override { return exists(file); }
  std::optional<platform::FileStamp> stamp(const std::filesystem::path& file) override {
    const std::lock_guard lock(mutex_);
    const auto found = files_.find(file.string());
    if (found == files_.end()) return std::nullopt;
    return platform::FileStamp{
        .modified = found->second.number, .size = found->second.text->size(), .inode = 0};
  }
  std::optional<std::string> read(const std::filesystem::path& file, std::string* error) override {
    auto found = text(file);
    if (!found && error != nullptr) *error = "there is no such file";
    return found;
  }
  std::vector<std::string> list(const std::filesystem::path& folder) override {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    for (const auto& [name, file] : files_) {
      const std::filesystem::path path(name);
      if (path.parent_path() == folder) names.push_back(path.filename().string());
    }
    return names;
  }
  std::unique_ptr<platform::MappedFile> map(const std::filesystem::path& file) override {
    const std::lock_guard lock(mutex_);
    const auto found = files_.find(file.string());
    return found == files_.end() ? nullptr : std::make_unique<Share>(found->second.text);
  }
  platform::Failure createDirectories(const std::filesystem::path&) override {
    return platform::Failure::none();
  }
  platform::Failure writeAtomically(const std::filesystem::path& file,
                                    std::string_view text) override {
    put(file, std::string(text));
    return platform::Failure::none();
  }
  bool remove(const std::filesystem::path& file) override {
    const std::lock_guard lock(mutex_);
    files_.erase(file.string());
    return true;
  }
  void appendToLog(const std::filesystem::path&, std::string_view, std::uint64_t) override {}
  platform::FileLockResult lockExclusively(const std::filesystem::path&) override {
    return std::make_unique<platform::FileLock>();
  }
  bool isLockedByAnother(const std::filesystem::path&) override { return false; }

 private:
  struct File {
    std::shared_ptr<const std::string> text;
    std::int64_t number = 0;
  };
  class Share final : public platform::MappedFile {
   public:
    explicit Share(std::shared_ptr<const std::string> text) : text_(std::move(text)) {}
    [[nodiscard]] std::string_view bytes() const override { return *text_; }

   private:
    std::shared_ptr<const std::string> text_;
  };

  std::mutex mutex_;
  std::map<std::string, File> files_;
  std::int64_t writes_ = 0;
};

}  // namespace tessarok::plain
