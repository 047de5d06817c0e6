#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Workspace.h"

namespace tessarok::virtualdesktop {

/// Notes what is opened, and opens nothing. Main thread.
class VirtualWorkspace final : public platform::Workspace {
 public:
  void openFile(const std::filesystem::path& file) override { opened.push_back(file.string()); }
  void openUrl(std::string_view url) override { opened.emplace_back(url); }
  std::vector<std::string> opened;
};

}  // namespace tessarok::virtualdesktop
