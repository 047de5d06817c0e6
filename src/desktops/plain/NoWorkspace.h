#pragma once

#include "platform/Workspace.h"

namespace tessarok::plain {

/// Where nothing is opened: only a menu opens anything, and there is none. Main thread.
class NoWorkspace final : public platform::Workspace {
 public:
  void openFile(const std::filesystem::path&) override {}
  void openUrl(std::string_view) override {}
};

}  // namespace tessarok::plain
