#pragma once

#include "platform/StatusBar.h"

namespace tessarok::macos {

/// The right end of the menu bar.
class MacStatusBar final : public platform::StatusBar {
 public:
  std::unique_ptr<platform::StatusItem> createItem() override;
};

}  // namespace tessarok::macos
