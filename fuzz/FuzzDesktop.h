#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "MemoryFiles.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/support/PartlyVirtualDesktop.h"

namespace tessarok::fuzz {

/// The virtual desktop with files in memory. It is the process's desktop from its making on.
class FuzzDesktop final : public testing::PartlyVirtualDesktop {
 public:
  FuzzDesktop() { platform::setDesktop(*this); }

  /// Where a data file of this base name has to be for the program to find it.
  [[nodiscard]] static std::filesystem::path resource(std::string_view name) {
    return std::filesystem::path("/data") / (std::string(name) + ".txt");
  }

  MemoryFiles& files() override { return files_; }
  platform::Bundle& bundle() override { return bundle_; }
  platform::SerialQueues& serialQueues() override { return queues_; }
  [[nodiscard]] virtualdesktop::VirtualDesktop& base() override { return base_; }

 private:
  class MemoryBundle final : public platform::Bundle {
   public:
    explicit MemoryBundle(MemoryFiles& files) : files_(files) {}
    std::optional<std::string> identifier() override { return std::nullopt; }
    std::optional<std::filesystem::path> resource(std::string_view name,
                                                  std::string_view) override {
      auto file = FuzzDesktop::resource(name);
      return files_.exists(file) ? std::optional(std::move(file)) : std::nullopt;
    }
    bool isApplication() override { return true; }

   private:
    MemoryFiles& files_;
  };

  /// Does every job at once, because a change of threads takes longer than all else.
  class NoQueue final : public platform::SerialQueue {
   public:
    void async(std::function<void()> job) override { job(); }
    void drain() override {}
  };
  class NoQueues final : public platform::SerialQueues {
   public:
    std::unique_ptr<platform::SerialQueue> create(const std::string&) override {
      return std::make_unique<NoQueue>();
    }
  };

  NoQueues queues_;
  MemoryFiles files_;
  MemoryBundle bundle_{files_};
  virtualdesktop::VirtualDesktop base_{"/home", std::nullopt};
};

}  // namespace tessarok::fuzz
