#pragma once

#include "platform/Workspace.h"

namespace tessarok::macos {

/// The shared workspace.
class MacWorkspace final : public platform::Workspace {
 public:
  void openFile(const std::filesystem::path& file) override;
  void openUrl(std::string_view url) override;
};

}  // namespace tessarok::macos
