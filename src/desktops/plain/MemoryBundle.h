#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/plain/MemoryFiles.h"
#include "platform/Bundle.h"

namespace tessarok::plain {

/// A program whose data files are in memory, all of them in one folder. Main thread.
class MemoryBundle final : public platform::Bundle {
 public:
  /// `files` outlives this object.
  explicit MemoryBundle(MemoryFiles& files) : files_(files) {}

  /// Where a data file of this base name has to be for the program to find it.
  [[nodiscard]] static std::filesystem::path pathOf(std::string_view name) {
    return std::filesystem::path("/data") / (std::string(name) + ".txt");
  }

  std::optional<std::string> identifier() override { return std::nullopt; }
  std::optional<std::filesystem::path> resource(std::string_view name, std::string_view) override {
    auto file = pathOf(name);
    return files_.exists(file) ? std::optional(std::move(file)) : std::nullopt;
  }
  bool isApplication() override { return true; }

 private:
  MemoryFiles& files_;
};

}  // namespace tessarok::plain
