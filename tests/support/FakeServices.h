#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktops/posix/PosixFiles.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/Environment.h"
#include "platform/InputSources.h"
#include "platform/Keyboard.h"

/// The services of which a test decides the answers.
namespace tessarok::testing {

class FakeApplication final : public platform::Application {
 public:
  void becomeAccessory() override { isAccessory = true; }
  platform::RunningApplication self() override { return own; }
  std::vector<platform::RunningApplication> running(std::string_view identifier) override {
    askedFor = identifier;
    return all;
  }
  void terminate() override { terminationRequested = true; }

  platform::RunningApplication own{.processIdentifier = 100, .launchDate = 50.0};
  std::vector<platform::RunningApplication> all;
  std::string askedFor;
  bool isAccessory = false;
  bool terminationRequested = false;
};

class FakeBundle final : public platform::Bundle {
 public:
  std::optional<std::string> identifier() override { return ownIdentifier; }
  std::optional<std::filesystem::path> resource(std::string_view name,
                                                std::string_view extension) override {
    const auto found = resources.find(std::string(name) + "." + std::string(extension));
    if (found == resources.end()) return std::nullopt;
    return found->second;
  }
  bool isApplication() override { return installed; }

  std::optional<std::string> ownIdentifier;
  /// By file name; a location need not exist.
  std::map<std::string, std::filesystem::path> resources;
  bool installed = false;
};

class FakeEnvironment final : public platform::Environment {
 public:
  std::optional<std::string> variable(std::string_view name) override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }
  std::map<std::string, std::string, std::less<>> variables;
};

/// A mapped file whose pages memory may have lost.
class FakeMapping final : public platform::MappedFile {
 public:
  FakeMapping(std::unique_ptr<platform::MappedFile> file, const bool& isAtHand)
      : file_(std::move(file)), isAtHand_(isAtHand) {}
  [[nodiscard]] std::string_view bytes() const override { return file_->bytes(); }
  [[nodiscard]] bool hasLostPart() const override { return file_->hasLostPart(); }
  [[nodiscard]] bool isUnchanged() const override { return file_->isUnchanged(); }
  [[nodiscard]] bool isAtHand(std::size_t, std::size_t) override { return isAtHand_; }

 private:
  std::unique_ptr<platform::MappedFile> file_;
  const bool& isAtHand_;
};

/// Real files; counts reads and writes, and lets a test step in between. The counts are read
/// after the queues were drained.
class FakeFiles final : public posix::PosixFiles {
 public:
  using PosixFiles::PosixFiles;

  std::optional<std::filesystem::path> applicationSupportDirectory() override {
    return knowsApplicationSupport ? PosixFiles::applicationSupportDirectory() : std::nullopt;
  }
  std::optional<std::string> read(const std::filesystem::path& file, std::string* error) override {
    count(file, reads);
    auto text = PosixFiles::read(file, error);
    if (afterRead) afterRead(file);
    return text;
  }
  std::unique_ptr<platform::MappedFile> map(const std::filesystem::path& file) override {
    count(file, reads);
    auto mapping = PosixFiles::map(file);
    return mapping ? std::make_unique<FakeMapping>(std::move(mapping), mapsAreAtHand) : nullptr;
  }
  platform::Failure writeAtomically(const std::filesystem::path& file,
                                    std::string_view text) override {
    count(file, writes);
    if (std::exchange(failsNextWrite, false)) return platform::Failure("the disk is full");
    return PosixFiles::writeAtomically(file, text);
  }
  platform::FileLockResult lockExclusively(const std::filesystem::path& file) override {
    if (lockFailure) return *lockFailure;
    return PosixFiles::lockExclusively(file);
  }

  std::map<std::string, int> reads;
  std::map<std::string, int> writes;
  std::function<void(const std::filesystem::path& file)> afterRead;
  std::optional<platform::FileLockFailure> lockFailure;
  bool failsNextWrite = false;
  bool mapsAreAtHand = true;
  bool knowsApplicationSupport = true;

 private:
  /// Several queues read and write.
  void count(const std::filesystem::path& file, std::map<std::string, int>& counts) {
    const std::lock_guard lock(mutex_);
    ++counts[file.filename().string()];
  }

  std::mutex mutex_;
};

/// A layout whose keys give what the test says.
class FakeLayout final : public platform::InputSourceHandle {
 public:
  /// A key and whether Shift is held.
  using Key = std::pair<std::uint16_t, bool>;

  FakeLayout() = default;
  FakeLayout(std::optional<std::string> identifier, std::map<Key, std::u16string> characters)
      : ownIdentifier(std::move(identifier)), keys(std::move(characters)) {}

  std::optional<std::string> identifier() const override { return ownIdentifier; }
  bool hasLayoutData() const override { return hasData; }
  std::u16string translate(std::uint16_t keyCode, bool shift, std::uint32_t) const override {
    asked.push_back({keyCode, shift});
    const auto found = keys.find({keyCode, shift});
    return found == keys.end() ? std::u16string() : found->second;
  }

  std::optional<std::string> ownIdentifier;
  std::map<Key, std::u16string> keys;
  bool hasData = true;
  /// The keys asked for so far.
  mutable std::vector<Key> asked;
};

class FakeInputSources final : public platform::InputSources {
 public:
  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override {
    ++listings;
    return layouts;
  }
  const std::optional<std::string>& current() override { return active; }
  bool select(platform::InputSourceHandle& source) override {
    const auto identifier = source.identifier().value_or("(none)");
    selections.push_back(identifier);
    if (refuses.contains(identifier)) return false;
    active = identifier;
    return true;
  }

  std::vector<std::shared_ptr<platform::InputSourceHandle>> layouts;
  std::optional<std::string> active;
  /// Layouts that the system does not select; the value means nothing.
  std::map<std::string, bool> refuses;
  /// Selections tried so far, also those refused.
  std::vector<std::string> selections;
  int listings = 0;
};

class FakeKeyboard final : public platform::Keyboard {
 public:
  std::uint32_t type() override { return model; }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override { return shape; }
  double secondsSinceLastKeyDown() override { return silence; }

  std::uint32_t model = 40;
  platform::PhysicalLayoutType shape = platform::PhysicalLayoutType::ansi;
  double silence = std::numeric_limits<double>::infinity();
};

}  // namespace tessarok::testing
