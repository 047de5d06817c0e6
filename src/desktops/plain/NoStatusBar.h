#pragma once

#include "platform/StatusBar.h"

namespace tessarok::platform {

/// Where there is no place for an icon, and so no menu either. Main thread.
class NoStatusBar final : public StatusBar {
 public:
  std::unique_ptr<StatusItem> createItem() override { return nullptr; }
};

}  // namespace tessarok::platform
