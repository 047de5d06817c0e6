#pragma once

#include <filesystem>
#include <string_view>

#include "desktops/plain/MemoryBundle.h"
#include "desktops/plain/MemoryFiles.h"
#include "desktops/plain/NoQueues.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/support/PartlyVirtualDesktop.h"

namespace tessarok::fuzz {

/// The virtual desktop with files in memory. It is the process's desktop from its making on.
class FuzzDesktop final : public testing::PartlyVirtualDesktop {
 public:
  FuzzDesktop() { platform::setDesktop(*this); }

  /// Where a data file of this base name has to be for the program to find it.
  [[nodiscard]] static std::filesystem::path resource(std::string_view name) {
    return plain::MemoryBundle::pathOf(name);
  }

  plain::MemoryFiles& files() override { return files_; }
  platform::Bundle& bundle() override { return bundle_; }
  platform::SerialQueues& serialQueues() override { return queues_; }
  [[nodiscard]] virtualdesktop::VirtualDesktop& base() override { return base_; }

 private:
  plain::NoQueues queues_;
  plain::MemoryFiles files_;
  plain::MemoryBundle bundle_{files_};
  virtualdesktop::VirtualDesktop base_{"/home", std::nullopt};
};

}  // namespace tessarok::fuzz
