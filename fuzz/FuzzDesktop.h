#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "MemoryFiles.h"
#include "platform/virtual/VirtualDesktop.h"

namespace tessarok::fuzz {

/// The virtual desktop with files in memory. It is the process's desktop from its making on.
class FuzzDesktop final : public platform::Desktop {
 public:
  FuzzDesktop() { platform::setDesktop(*this); }

  /// Where a data file of this base name has to be for the program to find it.
  [[nodiscard]] static std::filesystem::path resource(std::string_view name) {
    return std::filesystem::path("/data") / (std::string(name) + ".txt");
  }

  MemoryFiles& files() override { return files_; }
  platform::Bundle& bundle() override { return bundle_; }

  platform::Accessibility& accessibility() override { return base_.accessibility(); }
  platform::Application& application() override { return base_.application(); }
  platform::Clock& clock() override { return base_.clock(); }
  platform::Environment& environment() override { return base_.environment(); }
  platform::EventTaps& eventTaps() override { return base_.eventTaps(); }
  platform::Events& events() override { return base_.events(); }
  platform::InputSources& inputSources() override { return base_.inputSources(); }
  platform::Notifications& inputSourceNotifications() override {
    return base_.inputSourceNotifications();
  }
  platform::Keyboard& keyboard() override { return base_.keyboard(); }
  platform::RunLoop& runLoop() override { return base_.runLoop(); }
  platform::SecureInput& secureInput() override { return base_.secureInput(); }
  platform::SerialQueues& serialQueues() override { return queues_; }
  platform::StatusBar& statusBar() override { return base_.statusBar(); }
  virtualdesktop::VirtualSystemLog& systemLog() override { return base_.systemLog(); }
  platform::UserDefaults& userDefaults() override { return base_.userDefaults(); }
  platform::Workspace& workspace() override { return base_.workspace(); }
  platform::Notifications& workspaceNotifications() override {
    return base_.workspaceNotifications();
  }

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
